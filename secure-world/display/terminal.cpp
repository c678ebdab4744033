#include "display/terminal.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace vaultpad::secureworld {

namespace {

constexpr int kPatience = 2000;  // ms that the terminal may take none of the text

}  // namespace

// Non-blocking on an open file of its own, so that the client's use of the same terminal stays as it is.
Terminal::Terminal() : file_(open("/dev/tty", O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
    if (!file_.valid()) {
        throw std::runtime_error(std::string("there is no terminal to draw on (/dev/tty: ") + std::strerror(errno) +
                                 "); choose another display");
    }
}

TerminalSize Terminal::size() const {
    winsize window = {};
    if (ioctl(file_.get(), TIOCGWINSZ, &window) != 0) {
        return {};
    }
    TerminalSize result = {window.ws_col, window.ws_row, 0, 0};
    if (window.ws_col > 0 && window.ws_row > 0) {
        result.cellWidth = window.ws_xpixel / window.ws_col;
        result.cellHeight = window.ws_ypixel / window.ws_row;
    }
    return result;
}

void Terminal::write(const std::string& text) const {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t count = ::write(file_.get(), text.data() + done, text.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
            continue;
        }
        pollfd writable = {file_.get(), POLLOUT, 0};
        if (errno == EINTR || (errno == EAGAIN && poll(&writable, 1, kPatience) > 0)) {
            continue;
        }
        throw std::runtime_error(errno == EAGAIN ? "the terminal takes no picture" : std::strerror(errno));
    }
}

}  // namespace vaultpad::secureworld
