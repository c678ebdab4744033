#include "voice/player-voice.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "channel/file-descriptor.h"
#include "voice/wave-file.h"

namespace vaultpad::secureworld {

namespace {

constexpr int kNotStarted = 127;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

FileDescriptor memoryFileOf(const Sound& sound) {
    FileDescriptor file(memfd_create("voice", MFD_CLOEXEC));
    if (!file.valid()) {
        fail("no memory for the sound");
    }
    for (std::size_t written = 0; written < sound.size();) {
        const ssize_t count = write(file.get(), sound.data() + written, sound.size() - written);
        if (count < 0 && errno != EINTR) {
            fail("no memory for the sound");
        }
        written += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    lseek(file.get(), 0, SEEK_SET);
    return file;
}

// This process's handling of signals is its own affair.
void restoreSignals() {
    for (int number = 1; number < NSIG; ++number) {
        signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In the new process. Only calls that are allowed between fork() and exec.
[[noreturn]] void becomePlayer(const char* program, int sound, pid_t parent) {
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    // The parent may have ended before its death could be watched.
    const bool ready = getppid() == parent && dup2(sound, STDIN_FILENO) >= 0 && dup2(nowhere, STDOUT_FILENO) >= 0 &&
                       dup2(nowhere, STDERR_FILENO) >= 0 && close_range(STDERR_FILENO + 1, ~0u, 0) == 0;
    if (ready) {
        restoreSignals();
        execl(program, program, static_cast<char*>(nullptr));
    }
    _exit(kNotStarted);
}

}  // namespace

PlayerVoice::PlayerVoice(std::string program, Log* log) : program_(std::move(program)), log_(log) {
    struct stat status = {};
    if (stat(program_.c_str(), &status) != 0 || access(program_.c_str(), X_OK) != 0) {
        fail("the voice player " + program_ + " cannot be run");
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error("the voice player " + program_ + " is no program");
    }
}

void PlayerVoice::speak(const std::vector<VoiceClip>& clips) {
    stop();
    if (!clips.empty()) {
        start(joinedWaveFile(clips));
    }
}

void PlayerVoice::start(const Sound& sound) {
    const FileDescriptor file = memoryFileOf(sound);
    const pid_t parent = getpid();
    const pid_t child = fork();
    if (child < 0) {
        fail("the voice player cannot be started");
    }
    if (child == 0) {
        becomePlayer(program_.c_str(), file.get(), parent);
    }
    setpgid(child, child);  // here too: whoever comes first
    process_ = child;
}

// One that has ended by itself waits here to be reaped, so its number, the group's too, belongs to no one else yet.
void PlayerVoice::stop() {
    if (process_ == 0) {
        return;
    }
    tellFailure();
    kill(-process_, SIGKILL);
    kill(process_, SIGKILL);
    while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
    }
    process_ = 0;
}

void PlayerVoice::tellFailure() {
    siginfo_t ended = {};
    if (failureTold_ || waitid(P_PID, static_cast<id_t>(process_), &ended, WEXITED | WNOHANG | WNOWAIT) != 0 ||
        ended.si_pid == 0 || (ended.si_code == CLD_EXITED && ended.si_status == 0)) {
        return;
    }
    failureTold_ = true;
    log_->line("the voice player " + program_ + " fails: " +
               (ended.si_code == CLD_EXITED ? "exit status " : "signal ") + std::to_string(ended.si_status));
}

}  // namespace vaultpad::secureworld
