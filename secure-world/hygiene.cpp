#include "hygiene.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vaultpad::secureworld {

namespace {

// A row of pictures or sounds tells what was typed by where the focus was: nobody but the user may read it.
constexpr mode_t kPrivate = 0077;

void check(bool ok, const char* what) {
    if (!ok) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

}  // namespace

void hardenProcess() {
    check(prctl(PR_SET_DUMPABLE, 0) == 0, "the process cannot be made undumpable");
    const rlimit none = {0, 0};
    check(setrlimit(RLIMIT_CORE, &none) == 0, "core files cannot be ruled out");
    umask(kPrivate);
}

FileDescriptor takeSignals() {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    // SIGTTOU: drawing on a terminal from the background must not stop the process.
    for (const int number : {SIGPIPE, SIGINT, SIGTTOU}) {
        check(sigaction(number, &ignore, nullptr) == 0, "a signal cannot be ignored");
    }
    sigset_t ends;
    sigemptyset(&ends);
    for (const int number : {SIGTERM, SIGHUP, SIGQUIT}) {
        sigaddset(&ends, number);
    }
    check(sigprocmask(SIG_BLOCK, &ends, nullptr) == 0, "signals cannot be blocked");
    FileDescriptor descriptor(signalfd(-1, &ends, SFD_CLOEXEC | SFD_NONBLOCK));
    check(descriptor.valid(), "signals cannot be received");
    return descriptor;
}

FileDescriptor watchProcess(pid_t process, bool* gone) {
    *gone = false;
    if (process <= 0) {
        return FileDescriptor();
    }
    // By number: the C library's header for it is not usable from C++ everywhere.
    FileDescriptor descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
    *gone = !descriptor.valid() && errno == ESRCH;
    return descriptor;
}

}  // namespace vaultpad::secureworld
