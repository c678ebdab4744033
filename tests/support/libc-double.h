/*
 * The calls into libc that the library's objects make, under a test's control.
 *
 * The linker redirects (--wrap) fork, execl, kill, signal, malloc, calloc, fopen, fread, usleep, bind, listen, accept,
 * recv, connect and getsockopt of the objects linked into a test executable, and of nothing in shared libraries.
 * Without a test's word each does what libc does, but for bind and connect: they keep the voice maker's socket address
 * to the process, so that tests may run side by side.
 */
#ifndef VAULTPAD_TESTS_SUPPORT_LIBC_DOUBLE_H
#define VAULTPAD_TESTS_SUPPORT_LIBC_DOUBLE_H

#include <sys/types.h>

#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace vaultpad::test {

struct LibcDouble {
    /* Ids that the next forks return; after them helperPid. Nothing is forked. fork, execl, kill and signal are
     * recorded in the platform's journal. */
    bool processesAreFake = false;
    std::deque<pid_t> forks;
    pid_t helperPid = 4242;

    /* With real processes: the program and arguments that execl() runs instead. */
    std::vector<std::string> programInstead;

    /* The allocation, counted from now, that fails once: 1 is the next malloc() or calloc(). 0: none. */
    int failingAllocation = 0;

    /* Asked at each malloc() and calloc(); true makes it fail. */
    bool (*allocationObserver)() = nullptr;

    /* What stands in for the process's security label file: its text, or the error of opening it. */
    std::optional<std::string> securityLabel;
    int securityLabelError = 0;
    bool freadFails = false;

    /* usleep() returns at once and is recorded. */
    bool sleepsAreFake = false;

    /* The user that every peer of a socket is said to be. */
    std::optional<uid_t> peerUser;

    /* Addresses given to bind() and connect(), all bytes. */
    std::vector<std::string> boundAddresses;
};

LibcDouble& libc();

}  // namespace vaultpad::test

#endif
