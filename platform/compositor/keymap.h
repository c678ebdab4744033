/* The remote control's keys as a Wayland keyboard. */
#ifndef VAULTPAD_COMPOSITOR_KEYMAP_H
#define VAULTPAD_COMPOSITOR_KEYMAP_H

#include <cstdint>
#include <string>

#include "../host/unique-fd.h"

namespace vaultpad::compositor {

/* The keyboard description that clients compile, in xkb's text format. */
std::string keymapText();

/* The same, sealed, to hand to clients. Throws std::runtime_error. */
struct Keymap {
    host::UniqueFd fd;
    uint32_t size = 0; /* with the closing NUL */
};
Keymap makeKeymap();

/* The kernel's code of the key; 0 when the remote control has none of that name. */
uint32_t codeOf(const std::string& name);

}  // namespace vaultpad::compositor

#endif
