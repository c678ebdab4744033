// The trusted application's log. Nothing that is written here tells what is typed or which key has the focus.
#ifndef VAULTPAD_SECURE_WORLD_LOG_H
#define VAULTPAD_SECURE_WORLD_LOG_H

#include <string>

#include "channel/file-descriptor.h"

namespace vaultpad::secureworld {

class Log {
public:
    // target: stderr, none, or the path of a file that lines are appended to. Throws std::runtime_error when the file
    // cannot be opened.
    explicit Log(const std::string& target);

    // Writes one line with the process's name and id before it. Failures are ignored: there is no place to tell.
    void line(const std::string& text) const;

private:
    FileDescriptor file_;
    int descriptor_;
};

}  // namespace vaultpad::secureworld

#endif
