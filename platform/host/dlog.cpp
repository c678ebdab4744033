#include <fcntl.h>
#include <string.h>
#include <unistd.h>
#include <vaultpad-platform/dlog.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "call-guard.h"
#include "call-trace.h"
#include "television.h"
#include "unique-fd.h"

namespace vaultpad::host {

namespace {

constexpr std::size_t kUsualLineSize = 1024;

/* The letter that a priority is shown as. */
char priorityLetter(int priority) {
    constexpr char kLetters[] = {'V', 'D', 'I', 'W', 'E', 'F'};
    constexpr int kFirst = 2; /* verbose */
    const int index = priority - kFirst;
    return index >= 0 && index < static_cast<int>(sizeof kLetters) ? kLetters[index] : '?';
}

/* Room for one line, wiped when it goes. */
class Line {
public:
    Line() = default;
    ~Line() { explicit_bzero(data(), capacity_); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    /* Formats the line with its newline. Returns its length, negative when that cannot be done. */
    int format(int priority, const char* tag, const char* format, va_list arguments) {
        va_list again;
        va_copy(again, arguments);
        int length = fill(priority, tag, format, arguments);
        if (length >= 0 && static_cast<std::size_t>(length) + 1 >= capacity_ && grow(length)) {
            length = fill(priority, tag, format, again);
        }
        va_end(again);
        if (length < 0) {
            return length;
        }
        /* Without memory for a long line, its beginning is better than nothing. */
        length = std::min(length, static_cast<int>(capacity_) - 2);
        data()[length] = '\n';
        return length + 1;
    }

    const char* text() const { return large_ ? large_.get() : usual_.data(); }

private:
    char* data() { return large_ ? large_.get() : usual_.data(); }

    int fill(int priority, const char* tag, const char* format, va_list arguments) {
        const int head = snprintf(data(), capacity_, "%c/%s: ", priorityLetter(priority), tag);
        if (head < 0) {
            return head;
        }
        const std::size_t used = std::min(static_cast<std::size_t>(head), capacity_);
        const int body = vsnprintf(data() + used, capacity_ - used, format, arguments);
        return body < 0 ? body : head + body;
    }

    bool grow(int length) {
        const std::size_t size = static_cast<std::size_t>(length) + 2; /* newline and NUL */
        std::unique_ptr<char[]> larger(new (std::nothrow) char[size]);
        if (!larger) {
            return false;
        }
        explicit_bzero(data(), capacity_);
        large_ = std::move(larger);
        capacity_ = size;
        return true;
    }

    std::array<char, kUsualLineSize> usual_;
    std::unique_ptr<char[]> large_;
    std::size_t capacity_ = kUsualLineSize;
};

/* One write for a line, so that lines of several threads and processes stay whole. */
int writeLine(int fd, const Line& line, int length) {
    ssize_t written = 0;
    do {
        written = write(fd, line.text(), static_cast<std::size_t>(length));
    } while (written < 0 && errno == EINTR);
    return written < 0 ? kFailure : static_cast<int>(written);
}

/*
 * The message within a format, for the trace: the arguments may be secrets. What stands before it, place and colour,
 * and the colour's end are cut off.
 */
void copyMessage(const char* format, char* message, std::size_t capacity) {
    constexpr const char* kPlaceEnd = " > ";
    constexpr char kEscape = '\033';
    const char* const place = std::strstr(format, kPlaceEnd);
    const char* begin = place == nullptr ? format : place + std::strlen(kPlaceEnd);
    if (*begin == kEscape) {
        const char* const colourEnd = std::strchr(begin, 'm');
        begin = colourEnd == nullptr ? begin : colourEnd + 1;
    }
    const std::size_t length = std::min(std::strcspn(begin, "\033\n"), capacity - 1);
    std::memcpy(message, begin, length);
    message[length] = '\0';
}

int print(int priority, const char* tag, const char* format, va_list arguments) {
    const std::shared_ptr<const Television> settings = television();
    const LogTarget target = settings ? settings->logTarget : LogTarget::kStderr;
    if (target == LogTarget::kNone || (settings && settings->logErrorsOnly && priority < VAULTPAD_DLOG_ERROR) ||
        priority < VAULTPAD_DLOG_INFO) {
        return 0;
    }
    Line line;
    const int length = line.format(priority, tag, format, arguments);
    if (length < 0) {
        return kFailure;
    }
    if (target == LogTarget::kFile) {
        /* Opened for each line: a kept descriptor could be closed by the client and become another file's. */
        const UniqueFd file(open(settings->logFile.c_str(), kLogFileFlags, kLogFileMode));
        return file.valid() ? writeLine(file.get(), line, length) : writeLine(STDERR_FILENO, line, length);
    }
    return writeLine(STDERR_FILENO, line, length);
}

}  // namespace

}  // namespace vaultpad::host

int __dlog_print(int, int priority, const char* tag, const char* format, ...) {
    if (format == nullptr) {
        return vaultpad::host::kFailure;
    }
    char message[128] = "";
    if (vaultpad::host::CallTrace::enabled()) {
        vaultpad::host::copyMessage(format, message, sizeof message);
    }
    const vaultpad::host::CallTrace trace(__func__, message);
    const int error = errno;
    va_list arguments;
    va_start(arguments, format);
    const int result = vaultpad::host::print(priority, tag == nullptr ? "" : tag, format, arguments);
    va_end(arguments);
    errno = error;
    return result;
}
