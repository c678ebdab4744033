// The one way in which an event is turned down.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_REFUSAL_H
#define VAULTPAD_SECURE_WORLD_SESSION_REFUSAL_H

#include <stdexcept>

namespace vaultpad::secureworld {

// Thrown before anything of the session has changed. what() is the reason for the log: it never tells what was typed.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace vaultpad::secureworld

#endif
