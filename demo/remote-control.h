/* Where the demo's keys come from: a list, or the terminal's keyboard. */
#ifndef VAULTPAD_DEMO_REMOTE_CONTROL_H
#define VAULTPAD_DEMO_REMOTE_CONTROL_H

#include <termios.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vaultpad_demo {

/* One press of a key. */
struct KeyPress {
    std::string name; /* the platform's name of the key; empty for a key that no remote control has */
};

class RemoteControl {
public:
    virtual ~RemoteControl() = default;
    /* Waits for the next key; nothing when there are no more. */
    virtual std::optional<KeyPress> next() = 0;
};

/* Presses the listed keys. */
std::unique_ptr<RemoteControl> makeScriptedRemote(std::vector<std::string> keys);

/*
 * Reads the terminal's keyboard: arrows, Return, and Escape for the remote control's Back. The terminal's settings are
 * put back when it goes. Throws std::runtime_error when standard input is no terminal.
 */
std::unique_ptr<RemoteControl> makeKeyboardRemote();

}  // namespace vaultpad_demo

#endif
