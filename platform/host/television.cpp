#include "television.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "television-file.h"
#include "unique-fd.h"

namespace vaultpad::host {

namespace {

constexpr const char* kVariable = "VAULTPAD_TELEVISION";
constexpr off_t kFileSizeMax = off_t{1024} * 1024;

/* What tells one state of the file from another. */
struct FileState {
    int error = 0; /* errno of a failed look at it */
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec modified = {};
    timespec changed = {};
};

bool operator==(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

bool operator==(const FileState& left, const FileState& right) {
    return left.error == right.error && left.device == right.device && left.inode == right.inode &&
           left.size == right.size && left.modified == right.modified && left.changed == right.changed;
}

FileState describe(const struct stat& status) {
    return {0, status.st_dev, status.st_ino, status.st_size, status.st_mtim, status.st_ctim};
}

FileState lookAt(const char* file) {
    struct stat status = {};
    if (stat(file, &status) != 0) {
        FileState state;
        state.error = errno;
        return state;
    }
    return describe(status);
}

/* Holds a mutex with signals blocked: a signal handler that logs comes here too, and must not meet its own lock. */
class SignalSafeLock {
public:
    explicit SignalSafeLock(std::mutex& mutex) : mutex_(mutex) {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &previous_);
        mutex_.lock();
    }
    ~SignalSafeLock() {
        mutex_.unlock();
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }
    SignalSafeLock(const SignalSafeLock&) = delete;
    SignalSafeLock& operator=(const SignalSafeLock&) = delete;

private:
    std::mutex& mutex_;
    sigset_t previous_;
};

void printProblem(const std::string& problem) {
    const std::string line = problem + "\n";
    /* Nothing can be done about a standard error stream that takes no text. */
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
}

/* Reads the whole file into text and tells its state; false, with errno, on failure. */
bool readFile(const char* file, std::string& text, FileState& state) {
    const UniqueFd fd(open(file, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!fd.valid() || fstat(fd.get(), &status) != 0) {
        state = lookAt(file);
        return false;
    }
    state = describe(status);
    if (!S_ISREG(status.st_mode) || status.st_size > kFileSizeMax) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : S_ISREG(status.st_mode) ? EFBIG : EINVAL;
        return false;
    }
    text.resize(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < text.size()) {
        const ssize_t count = read(fd.get(), text.data() + filled, text.size() - filled);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return false;
        }
        if (count == 0) {
            break; /* it was cut just now; the next call sees another state */
        }
        filled += static_cast<std::size_t>(count);
    }
    text.resize(filled);
    return true;
}

class CurrentTelevision {
public:
    std::shared_ptr<const Television> get() {
        const char* const file = std::getenv(kVariable);
        const SignalSafeLock lock(mutex_);
        if (file == nullptr || *file == '\0') {
            if (!known_ || !file_.empty()) {
                file_.clear();
                television_ = std::make_shared<const Television>();
                known_ = true;
            }
        } else if (!known_ || file_ != file || !(lookAt(file) == state_)) {
            load(file);
        }
        return television_;
    }

private:
    /* The log itself never complains: a file that takes no lines is told here. */
    void checkLogFile(const std::string& logFile, std::vector<std::string>& problems) const {
        const UniqueFd log(open(logFile.c_str(), kLogFileFlags, kLogFileMode));
        if (!log.valid()) {
            problems.push_back(file_ + ": [log] target = " + logFile + ": cannot be written: " + std::strerror(errno));
        }
    }

    void load(const char* file) {
        television_.reset();
        file_ = file;
        known_ = true;
        std::string text;
        if (!readFile(file, text, state_)) {
            printProblem(file_ + ": cannot be read: " + std::strerror(errno) + "; correct " + kVariable);
            return;
        }
        auto loaded = std::make_shared<Television>();
        std::vector<std::string> problems = parseTelevision(text, file_, *loaded);
        if (problems.empty() && loaded->logTarget == LogTarget::kFile) {
            checkLogFile(loaded->logFile, problems);
        }
        for (const std::string& problem : problems) {
            printProblem(problem);
        }
        if (problems.empty()) {
            television_ = std::move(loaded);
        }
    }

    std::mutex mutex_;
    bool known_ = false; /* the rest holds something */
    std::string file_;   /* empty: the defaults */
    FileState state_;
    std::shared_ptr<const Television> television_;
};

}  // namespace

std::shared_ptr<const Television> television() noexcept {
    try {
        /* Never destroyed: the log is used until the process is gone. */
        static auto* const current = new CurrentTelevision;
        return current->get();
    } catch (const std::exception&) {
        return nullptr;
    }
}

}  // namespace vaultpad::host
