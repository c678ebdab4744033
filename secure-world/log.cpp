#include "log.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>

namespace vaultpad::secureworld {

namespace {

constexpr mode_t kLogMode = 0600;

}  // namespace

Log::Log(const std::string& target) : descriptor_(-1) {
    if (target == "none") {
        return;
    }
    if (target == "stderr") {
        descriptor_ = STDERR_FILENO;
        return;
    }
    file_ = FileDescriptor(open(target.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, kLogMode));
    if (!file_.valid()) {
        throw std::runtime_error("cannot open the log " + target + ": " + std::strerror(errno));
    }
    descriptor_ = file_.get();
}

void Log::line(const std::string& text) const {
    if (descriptor_ < 0) {
        return;
    }
    // One write, so that lines of several processes do not mix.
    const std::string whole = "vaultpad-ta[" + std::to_string(getpid()) + "]: " + text + '\n';
    if (write(descriptor_, whole.data(), whole.size()) < 0) {
        return;
    }
}

}  // namespace vaultpad::secureworld
