#include "compositor-process.h"

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

extern char** environ;

namespace vaultpad::compositor {

namespace {

constexpr const char* kSocket = "vaultpad";
constexpr std::chrono::seconds kPatience{10};
constexpr std::chrono::milliseconds kReapInterval{5};

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error("the compositor " + what);
}

/* The child's environment: this one's, with a runtime folder of its own. */
std::vector<std::string> environmentWith(const std::string& folder) {
    std::vector<std::string> variables = {"XDG_RUNTIME_DIR=" + folder};
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (std::strncmp(*variable, "XDG_RUNTIME_DIR=", std::strlen("XDG_RUNTIME_DIR=")) != 0) {
            variables.emplace_back(*variable);
        }
    }
    return variables;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

}  // namespace

CompositorProcess::CompositorProcess(const std::string& executable)
    : folder_((std::filesystem::temp_directory_path() / "vaultpad-compositor-XXXXXX").string()) {
    if (mkdtemp(folder_.data()) == nullptr) {
        throw std::runtime_error(folder_ + ": " + std::strerror(errno));
    }
    try {
        start(executable);
        const std::string line = nextLine(Clock::now() + kPatience);
        if (line.rfind("ready ", 0) != 0) {
            fail("did not start: " + line);
        }
    } catch (...) {
        stop();
        throw;
    }
}

CompositorProcess::~CompositorProcess() {
    stop();
}

void CompositorProcess::start(const std::string& executable) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        fail(std::string("cannot be reached: ") + std::strerror(errno));
    }
    control_ = host::UniqueFd(ends[0]);
    const host::UniqueFd childsEnd(ends[1]);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, childsEnd.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, childsEnd.get(), STDOUT_FILENO);
    std::vector<std::string> arguments = {executable, "--socket", kSocket};
    std::vector<std::string> environment = environmentWith(folder_);
    const int error = posix_spawn(&pid_, executable.c_str(), &actions, nullptr, pointersTo(arguments).data(),
                                  pointersTo(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) {
        pid_ = -1;
        fail("'" + executable + "' could not be started: " + std::strerror(error));
    }
}

std::string CompositorProcess::display() const {
    return folder_ + "/" + kSocket;
}

std::string CompositorProcess::nextLine(Clock::time_point deadline) {
    for (;;) {
        const std::size_t newline = buffer_.find('\n');
        if (newline != std::string::npos) {
            std::string line = buffer_.substr(0, newline);
            buffer_.erase(0, newline + 1);
            return line;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd input = {control_.get(), POLLIN, 0};
        if (left.count() <= 0 || (poll(&input, 1, static_cast<int>(left.count())) < 0 && errno != EINTR)) {
            fail("does not answer");
        }
        char bytes[1024];
        const ssize_t count = recv(control_.get(), bytes, sizeof(bytes), MSG_DONTWAIT);
        if (count > 0) {
            buffer_.append(bytes, static_cast<std::size_t>(count));
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            fail("is gone");
        }
    }
}

std::vector<std::string> CompositorProcess::command(const std::string& line) {
    const std::string text = line + "\n";
    if (send(control_.get(), text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size())) {
        fail("is gone");
    }
    const auto deadline = Clock::now() + kPatience;
    std::vector<std::string> lines;
    for (;;) {
        const std::string answer = nextLine(deadline);
        if (answer == "ok " + line) {
            unread_.insert(unread_.end(), lines.begin(), lines.end());
            return lines;
        }
        if (answer.rfind("error ", 0) == 0) {
            fail("refused '" + line + "': " + answer);
        }
        lines.push_back(answer);
    }
}

void CompositorProcess::waitFor(const std::string& line) {
    const auto deadline = Clock::now() + kPatience;
    while (!unread_.empty()) {
        const std::string earlier = unread_.front();
        unread_.pop_front();
        if (earlier == line) {
            return;
        }
    }
    try {
        while (nextLine(deadline) != line) {
        }
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string(error.what()) + ", while waiting for '" + line + "'");
    }
}

int CompositorProcess::stop() {
    int status = 0;
    if (pid_ > 0) {
        shutdown(control_.get(), SHUT_WR);
        const auto deadline = Clock::now() + kPatience;
        pid_t reaped = 0;
        while ((reaped = waitpid(pid_, &status, WNOHANG)) == 0 && Clock::now() < deadline) {
            std::this_thread::sleep_for(kReapInterval);
        }
        if (reaped == 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, &status, 0);
        }
        pid_ = -1;
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
    return status;
}

}  // namespace vaultpad::compositor
