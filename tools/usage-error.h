/* What the user asked for cannot be: told in one line, exit status 2. */
#ifndef VAULTPAD_TOOLS_USAGE_ERROR_H
#define VAULTPAD_TOOLS_USAGE_ERROR_H

#include <stdexcept>

namespace vaultpad::tools {

class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace vaultpad::tools

#endif
