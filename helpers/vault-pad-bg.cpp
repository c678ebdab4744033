// The background helper: runs from the start-up of a pad until it is shown, with the kind of pad and the state of the
// voice connection as its arguments. On a development host there is no loading indicator to hold, so it only waits for
// its end: SIGTERM, or the end of the process that started it (on the television and here, as a rule, SIGKILL).
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace {

constexpr int kWrongUse = 2;
constexpr int kFailure = 1;

bool isOneOf(std::string_view word, std::string_view first, std::string_view second) {
    return word == first || word == second;
}

int openPidfd(pid_t pid) {
    return static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
}

// A signal that was blocked when the client forked must still end the helper.
int openTerminationSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGHUP);
    sigprocmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC);
}

int waitForTheEnd() {
    const pid_t parent = getppid();
    pollfd ends[] = {{openTerminationSignals(), POLLIN, 0}, {openPidfd(parent), POLLIN, 0}};
    // The parent may have gone before it could be watched.
    if (ends[0].fd < 0 || ends[1].fd < 0 || getppid() != parent) {
        return kFailure;
    }
    while (poll(ends, 2, -1) < 0) {
        if (errno != EINTR) {
            std::fprintf(stderr, "vault-pad-bg: poll: %s\n", std::strerror(errno));
            return kFailure;
        }
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 || !isOneOf(argv[1], "keyboard", "numpad") || !isOneOf(argv[2], "connect", "disconnect")) {
        std::fprintf(stderr, "vault-pad-bg: usage: vault-pad-bg keyboard|numpad connect|disconnect\n");
        return kWrongUse;
    }
    return waitForTheEnd();
}
