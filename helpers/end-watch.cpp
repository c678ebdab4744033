#include "end-watch.h"

#include <signal.h>
#include <sys/signalfd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace vaultpad::helpers {

namespace {

int openTerminationSignals() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGTERM);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGHUP);
    sigprocmask(SIG_BLOCK, &set, nullptr);
    return signalfd(-1, &set, SFD_CLOEXEC);
}

}  // namespace

EndWatch::EndWatch() : signals_(openTerminationSignals()) {
    const pid_t starter = getppid();
    starter_ = static_cast<int>(syscall(SYS_pidfd_open, starter, 0));
    // It may have gone before it could be watched, and its number to another process.
    works_ = signals_ >= 0 && starter_ >= 0 && getppid() == starter;
}

EndWatch::~EndWatch() {
    close(signals_);
    close(starter_);
}

bool EndWatch::endsWithin(std::chrono::milliseconds time) const {
    const auto deadline = std::chrono::steady_clock::now() + time;
    for (;;) {
        std::array<pollfd, 2> ends = descriptors();
        const int left = static_cast<int>(
            std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count());
        const int ready = poll(ends.data(), ends.size(), time.count() < 0 ? -1 : left > 0 ? left : 0);
        if (ready >= 0 || errno != EINTR) {
            return ready != 0;
        }
    }
}

}  // namespace vaultpad::helpers
