#include "remote-control.h"

#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

namespace vaultpad_demo {

namespace {

// After an Escape the rest of an arrow key's sequence is there at once; a person's Escape is followed by nothing.
constexpr int kSequenceMilliseconds = 50;
constexpr char kEscape = '\033';
constexpr char kInterrupt = '\003';

class ScriptedRemote : public RemoteControl {
public:
    explicit ScriptedRemote(std::vector<std::string> keys) : keys_(std::move(keys)) {}

    std::optional<KeyPress> next() override {
        if (position_ == keys_.size()) {
            return std::nullopt;
        }
        return KeyPress{keys_[position_++]};
    }

private:
    std::vector<std::string> keys_;
    std::size_t position_ = 0;
};

class KeyboardRemote : public RemoteControl {
public:
    KeyboardRemote() {
        if (tcgetattr(STDIN_FILENO, &saved_) != 0) {
            throw std::runtime_error("standard input is no terminal: give the keys with --keys");
        }
        termios raw = saved_;
        // Signals off too: Ctrl-C must close the pad before it ends the program.
        raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO | ISIG);
        raw.c_cc[VMIN] = 1;
        raw.c_cc[VTIME] = 0;
        tcsetattr(STDIN_FILENO, TCSAFLUSH, &raw);
    }
    ~KeyboardRemote() override { tcsetattr(STDIN_FILENO, TCSAFLUSH, &saved_); }
    KeyboardRemote(const KeyboardRemote&) = delete;
    KeyboardRemote& operator=(const KeyboardRemote&) = delete;

    std::optional<KeyPress> next() override {
        const std::optional<char> key = readByte(-1);
        if (!key) {
            return std::nullopt;
        }
        switch (*key) {
            case '\n':
            case '\r':
                return KeyPress{"Return"};
            case kEscape:
                return KeyPress{escapeSequence()};
            case kInterrupt:
                return KeyPress{"XF86Exit"};
            default:
                return KeyPress{};
        }
    }

private:
    static std::optional<char> readByte(int timeoutMilliseconds) {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        int ready = 0;
        while ((ready = poll(&input, 1, timeoutMilliseconds)) < 0 && errno == EINTR) {
        }
        char byte = 0;
        if (ready <= 0 || read(STDIN_FILENO, &byte, 1) != 1) {
            return std::nullopt;
        }
        return byte;
    }

    // ESC [ A and ESC O A are the same arrow in the terminal's two modes; a lone ESC is the remote control's Back.
    static std::string escapeSequence() {
        const std::optional<char> introducer = readByte(kSequenceMilliseconds);
        if (!introducer) {
            return "XF86Back";
        }
        if (*introducer != '[' && *introducer != 'O') {
            return {};
        }
        std::optional<char> byte = readByte(kSequenceMilliseconds);
        const bool parameters = byte && (*byte < '@' || *byte > '~');
        while (byte && (*byte < '@' || *byte > '~')) {
            byte = readByte(kSequenceMilliseconds);
        }
        return byte && !parameters ? arrowName(*byte) : std::string();
    }

    static std::string arrowName(char final) {
        switch (final) {
            case 'A':
                return "Up";
            case 'B':
                return "Down";
            case 'C':
                return "Right";
            case 'D':
                return "Left";
            default:
                return {};
        }
    }

    termios saved_{};
};

}  // namespace

std::unique_ptr<RemoteControl> makeScriptedRemote(std::vector<std::string> keys) {
    return std::make_unique<ScriptedRemote>(std::move(keys));
}

std::unique_ptr<RemoteControl> makeKeyboardRemote() {
    return std::make_unique<KeyboardRemote>();
}

}  // namespace vaultpad_demo
