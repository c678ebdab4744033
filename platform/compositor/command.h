/* What the compositor is told on its standard input, a line each. */
#ifndef VAULTPAD_COMPOSITOR_COMMAND_H
#define VAULTPAD_COMPOSITOR_COMMAND_H

#include <sys/types.h>

#include <string>

namespace vaultpad::compositor {

struct Command {
    enum class Kind { kNone, kPress, kRelease, kTap, kFocus, kList, kKeys, kWrong };
    Kind kind = Kind::kNone; /* kNone: an empty line, or a comment behind a # */
    std::string key;         /* of kPress, kRelease, kTap */
    pid_t client = 0;        /* of kFocus */
    std::string mistake;     /* of kWrong: what is wrong, and what would be right */
};

Command parseCommand(const std::string& line);

}  // namespace vaultpad::compositor

#endif
