#include "trusted-core-process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <vector>

/* Debian 12's version of this header does not say that its functions are C. */
extern "C" {
#include <sys/pidfd.h>
}

#include "host-log.h"
#include "poll-until.h"

namespace vaultpad::host {

namespace {

constexpr int kChannelInTa = 3;
constexpr std::chrono::seconds kGrace{2};
constexpr useconds_t kLookAgainMicroseconds = 5000;

std::vector<std::string> commandLine(const Television& television) {
    std::vector<std::string> words = {television.taExecutable, "--channel", std::to_string(kChannelInTa), "--display",
                                      television.taDisplay};
    if (!television.taFrames.empty()) {
        words.insert(words.end(), {"--frames", television.taFrames});
    }
    words.insert(words.end(), {"--view", television.taView});
    if (!television.taStore.empty()) {
        words.insert(words.end(), {"--store", television.taStore});
    }
    words.insert(words.end(), {"--voice", television.voice});
    if (!television.voiceFolder.empty()) {
        words.insert(words.end(), {"--voice-folder", television.voiceFolder});
    }
    if (!television.voicePlayer.empty()) {
        words.insert(words.end(), {"--voice-player", television.voicePlayer});
    }
    words.insert(words.end(), {"--log", television.taLog});
    return words;
}

/* What the new process finds: descriptors and signals. */
class SpawnSetup {
public:
    SpawnSetup() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    ~SpawnSetup() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&actions_);
    }
    SpawnSetup(const SpawnSetup&) = delete;
    SpawnSetup& operator=(const SpawnSetup&) = delete;

    /* channel must not be kChannelInTa itself or a standard stream. Returns 0, or an errno value. */
    int prepare(int channel) {
        for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
            const bool closed = fcntl(stream, F_GETFD) < 0;
            /* A free number would be taken by the first file that the TA opens, which would then get its messages. */
            const int error = closed ? posix_spawn_file_actions_addopen(&actions_, stream, "/dev/null", O_RDWR, 0) : 0;
            if (error != 0) {
                return error;
            }
        }
        sigset_t all;
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        sigset_t none;
        sigemptyset(&none);
        const int steps[] = {posix_spawn_file_actions_adddup2(&actions_, channel, kChannelInTa),
                             posix_spawn_file_actions_addclosefrom_np(&actions_, kChannelInTa + 1),
                             posix_spawnattr_setsigdefault(&attributes_, &all),
                             posix_spawnattr_setsigmask(&attributes_, &none),
                             posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK)};
        for (const int error : steps) {
            if (error != 0) {
                return error;
            }
        }
        return 0;
    }

    int spawn(pid_t& pid, const std::vector<std::string>& words) const {
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (const std::string& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));
        }
        arguments.push_back(nullptr);
        return posix_spawn(&pid, arguments[0], &actions_, &attributes_, arguments.data(), environ);
    }

private:
    posix_spawn_file_actions_t actions_;
    posix_spawnattr_t attributes_;
};

/* Short enough to need no memory. */
std::string describe(const siginfo_t& ended) {
    return (ended.si_code == CLD_EXITED ? "exit status " : "signal ") + std::to_string(ended.si_status);
}

}  // namespace

int TaProcess::start(const Television& television, int channel) {
    /* Out of the way of the number that it gets in the TA: dup2() onto itself would leave it closed on exec there. */
    const UniqueFd moved(fcntl(channel, F_DUPFD_CLOEXEC, kChannelInTa + 1));
    if (!moved.valid()) {
        return errno;
    }
    SpawnSetup setup;
    const int unprepared = setup.prepare(moved.get());
    if (unprepared != 0) {
        return unprepared;
    }
    const int failed = setup.spawn(pid_, commandLine(television));
    if (failed != 0) {
        pid_ = 0;
        return failed;
    }
    pidfd_ = UniqueFd(pidfd_open(pid_, 0));
    /* A system without process descriptors, or valgrind, is no reason to have no pad. */
    if (pidfd_.valid() || errno == ENOSYS) {
        return 0;
    }
    const int error = errno;
    if (error != ESRCH) {
        kill(pid_, SIGKILL);
    }
    waitpid(pid_, nullptr, 0);
    pid_ = 0;
    return error;
}

bool TaProcess::endsInTime() const {
    const PollClock::time_point deadline = PollClock::now() + kGrace;
    if (pidfd_.valid()) {
        return pollUntil(pidfd_.get(), POLLIN, deadline) == PollResult::kReady;
    }
    while (PollClock::now() < deadline) {
        siginfo_t ended = {};
        if (waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 || ended.si_pid != 0) {
            return true;
        }
        usleep(kLookAgainMicroseconds);
    }
    return false;
}

std::string TaProcess::end() noexcept {
    if (pid_ == 0) {
        return "";
    }
    if (!endsInTime()) {
        VAULTPAD_HOST_LOG_ERROR("the trusted application (process %d) does not end and is killed", pid_);
        if (pidfd_.valid()) {
            pidfd_send_signal(pidfd_.get(), SIGKILL, nullptr, 0);
        } else {
            kill(pid_, SIGKILL);
        }
        endsInTime();
    }
    siginfo_t ended = {};
    const idtype_t kind = pidfd_.valid() ? P_PIDFD : P_PID;
    const auto id = static_cast<id_t>(pidfd_.valid() ? pidfd_.get() : pid_);
    const bool reaped = waitid(kind, id, &ended, WEXITED | WNOHANG) == 0;
    pid_ = 0;
    pidfd_.reset();
    return reaped && ended.si_pid != 0 ? describe(ended) : "cause unknown";
}

}  // namespace vaultpad::host
