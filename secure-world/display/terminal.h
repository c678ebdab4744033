// The controlling terminal as a place to draw on.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_TERMINAL_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_TERMINAL_H

#include <string>

#include "channel/file-descriptor.h"

namespace vaultpad::secureworld {

struct TerminalSize {
    int columns = 0;
    int rows = 0;
    int cellWidth = 0;  // pixels, 0 when the terminal does not tell
    int cellHeight = 0;
};

inline bool operator!=(const TerminalSize& a, const TerminalSize& b) {
    return a.columns != b.columns || a.rows != b.rows || a.cellWidth != b.cellWidth || a.cellHeight != b.cellHeight;
}

class Terminal {
public:
    // Opens /dev/tty. Throws std::runtime_error when the process has no terminal.
    Terminal();

    TerminalSize size() const;

    // Writes all of the text, or throws std::runtime_error: a terminal that is held up must not hold the pad up.
    void write(const std::string& text) const;

private:
    FileDescriptor file_;
};

}  // namespace vaultpad::secureworld

#endif
