// How the process protects itself and notices that it is to end.
#ifndef VAULTPAD_SECURE_WORLD_HYGIENE_H
#define VAULTPAD_SECURE_WORLD_HYGIENE_H

#include <sys/types.h>

#include "channel/file-descriptor.h"

namespace vaultpad::secureworld {

// Keeps other processes of the same user out of this one's memory (no tracing, no /proc/<pid>/mem) and core files
// from being written; what it writes itself only its user may read. Throws std::system_error when the system does not
// allow it.
void hardenProcess();

// Ignores the signals that are the client's business: SIGINT of a terminal that both share, SIGPIPE. Returns a
// descriptor that becomes readable when the process is asked to end (SIGTERM, SIGHUP, SIGQUIT). Throws
// std::system_error.
FileDescriptor takeSignals();

// A descriptor that becomes readable when the process ends. Not valid when it cannot be watched; *gone tells whether
// that is because it has ended already.
FileDescriptor watchProcess(pid_t process, bool* gone);

}  // namespace vaultpad::secureworld

#endif
