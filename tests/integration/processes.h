/* What runs below a process. */
#ifndef VAULTPAD_TESTS_INTEGRATION_PROCESSES_H
#define VAULTPAD_TESTS_INTEGRATION_PROCESSES_H

#include <sys/types.h>

#include <cstddef>
#include <string>
#include <vector>

/* The children of the process, zombies included. */
std::vector<pid_t> childrenOf(pid_t parent);

/* The children whose executable has this name, and which have not ended. */
std::vector<pid_t> childrenNamed(pid_t parent, const std::string& name);

/* Waits up to five seconds until the process is gone or a zombie; false when it still runs. */
bool endsSoon(pid_t pid);

/* How many of the process's children are zombies, and how many descriptors this process has open. */
std::size_t zombiesOf(pid_t parent);
std::size_t openDescriptors();

#endif
