#include "killer.h"

#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "processes.h"

namespace vaultpad::soak {

namespace {

constexpr std::chrono::milliseconds kPause{2};

}  // namespace

Killer::Killer(std::string name, std::chrono::milliseconds delay)
    : thread_([this, name = std::move(name), delay] { run(name, delay); }) {}

Killer::~Killer() {
    stop();
}

bool Killer::stop() {
    stopping_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
    return killed_;
}

void Killer::run(const std::string& name, std::chrono::milliseconds delay) {
    const auto start = std::chrono::steady_clock::now();
    while (!stopping_ && std::chrono::steady_clock::now() - start < delay) {
        std::this_thread::sleep_for(kPause);
    }
    while (!stopping_ && !killOne(name)) {
        std::this_thread::sleep_for(kPause);
    }
}

// The number may have gone to another process since it was found: what is killed is what was seen to be a child after
// it was held.
bool Killer::killOne(const std::string& name) {
    const std::vector<pid_t> found = childrenNamed(getpid(), name);
    if (found.empty()) {
        return false;
    }
    const int held = static_cast<int>(syscall(SYS_pidfd_open, found.front(), 0));
    const std::vector<pid_t> still = childrenNamed(getpid(), name);
    if (held >= 0 && std::find(still.begin(), still.end(), found.front()) != still.end()) {
        killed_ = syscall(SYS_pidfd_send_signal, held, SIGKILL, nullptr, 0) == 0;
    }
    close(held);
    return killed_;
}

}  // namespace vaultpad::soak
