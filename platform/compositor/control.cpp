#include "control.h"

#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

namespace vaultpad::compositor {

namespace {

constexpr std::size_t kLineMax = 4096;

}  // namespace

Control::Control(Compositor& compositor, int input, bool keepRunning, Compositor::Say say)
    : compositor_(compositor), keepRunning_(keepRunning), say_(std::move(say)) {
    source_ =
        wl_event_loop_add_fd(wl_display_get_event_loop(compositor.display()), input, WL_EVENT_READABLE, onInput, this);
    if (source_ == nullptr) {
        /* A plain file cannot be waited for. */
        throw std::runtime_error("standard input cannot be waited for: make it a pipe, for instance 'cat FILE |'");
    }
}

Control::~Control() {
    if (source_ != nullptr) {
        wl_event_source_remove(source_);
    }
}

int Control::onInput(int fd, uint32_t, void* data) {
    auto* const self = static_cast<Control*>(data);
    if (!self->readAll(fd)) {
        self->end();
    }
    return 0;
}

bool Control::readAll(int fd) {
    char bytes[1024];
    const ssize_t count = read(fd, bytes, sizeof(bytes));
    if (count <= 0) {
        return count < 0 && (errno == EINTR || errno == EAGAIN);
    }
    buffer_.append(bytes, static_cast<std::size_t>(count));
    std::size_t start = 0;
    for (std::size_t newline = 0; (newline = buffer_.find('\n', start)) != std::string::npos; start = newline + 1) {
        obey(buffer_.substr(start, newline - start));
    }
    buffer_.erase(0, start);
    return buffer_.size() <= kLineMax;
}

void Control::obey(const std::string& line) {
    ++lineNumber_;
    const Command command = parseCommand(line);
    std::string mistake;
    if (compositor_.execute(command, mistake)) {
        if (command.kind != Command::Kind::kNone) {
            say_("ok " + line);
        }
        return;
    }
    failed_ = true;
    say_("error line " + std::to_string(lineNumber_) + ": " + mistake);
}

void Control::end() {
    wl_event_source_remove(std::exchange(source_, nullptr));
    if (!buffer_.empty()) {
        obey(std::exchange(buffer_, {}));
    }
    if (!keepRunning_) {
        wl_display_terminate(compositor_.display());
    }
}

}  // namespace vaultpad::compositor
