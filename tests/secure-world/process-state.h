// Whether a process is still there.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_PROCESS_STATE_H
#define VAULTPAD_TESTS_SECURE_WORLD_PROCESS_STATE_H

#include <sys/types.h>

namespace vaultpad::secureworld {

// A zombie counts as ended.
bool hasEndedOrIsZombie(pid_t process);

bool endsWithin(pid_t process, int seconds);

}  // namespace vaultpad::secureworld

#endif
