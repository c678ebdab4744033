#include "child-job.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "usage-error.h"

namespace vaultpad::tools {

namespace {

// The first byte of what a child hands back.
constexpr char kDone = 'd';
constexpr char kFailed = 'f';
constexpr char kWrongUse = 'u';

std::string outcomeOf(const std::function<std::string()>& work) {
    try {
        return kDone + work();
    } catch (const UsageError& error) {
        return std::string(1, kWrongUse) + error.what();
    } catch (const std::exception& error) {
        return std::string(1, kFailed) + error.what();
    }
}

void writeAll(int descriptor, const std::string& text) {
    std::size_t written = 0;
    while (written < text.size()) {
        const ssize_t count = write(descriptor, text.data() + written, text.size() - written);
        if (count < 0 && errno != EINTR) {
            return;
        }
        written += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

int waitFor(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

}  // namespace

ChildJob::ChildJob(const std::function<std::string()>& work) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "a pipe cannot be opened");
    }
    child_ = fork();
    if (child_ < 0) {
        const int reason = errno;
        close(ends[0]);
        close(ends[1]);
        throw std::system_error(reason, std::generic_category(), "a process cannot be started");
    }
    if (child_ == 0) {
        close(ends[0]);
        writeAll(ends[1], outcomeOf(work));
        // Nothing that was inherited from the parent is to be flushed or torn down twice.
        _exit(EXIT_SUCCESS);
    }
    close(ends[1]);
    descriptor_ = ends[0];
}

ChildJob::ChildJob(ChildJob&& other) noexcept
    : child_(std::exchange(other.child_, -1)), descriptor_(std::exchange(other.descriptor_, -1)) {}

ChildJob::~ChildJob() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    if (child_ >= 0) {
        waitFor(child_);
    }
}

std::string ChildJob::result() {
    const std::string outcome = readAll(descriptor_);
    const int status = waitFor(std::exchange(child_, -1));
    if (outcome.empty()) {
        throw std::runtime_error("drawing ended early, " +
                                 (WIFSIGNALED(status) ? "by signal " + std::to_string(WTERMSIG(status))
                                                      : "with status " + std::to_string(WEXITSTATUS(status))));
    }
    const std::string text = outcome.substr(1);
    if (outcome.front() == kWrongUse) {
        throw UsageError(text);
    }
    if (outcome.front() == kFailed) {
        throw std::runtime_error(text);
    }
    return text;
}

}  // namespace vaultpad::tools
