#include "call-trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "television.h"
#include "unique-fd.h"

namespace vaultpad::host {

namespace {

constexpr const char* kVariable = "VAULTPAD_TRACE";

/* Read once: a trace that begins in the middle tells nothing. */
const char* traceFile() {
    static const char* const file = []() -> const char* {
        const char* const name = std::getenv(kVariable);
        return name != nullptr && *name != '\0' ? strdup(name) : nullptr;
    }();
    return file;
}

int64_t microseconds() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
}

void complainOnce(const char* file) {
    static const int told = dprintf(STDERR_FILENO, "%s: the trace cannot be written: %s; correct %s\n", file,
                                    std::strerror(errno), kVariable);
    static_cast<void>(told);
}

}  // namespace

bool CallTrace::enabled() noexcept {
    return traceFile() != nullptr;
}

CallTrace::CallTrace(const char* call, const char* detail, int64_t number) noexcept
    : call_(call), detail_(detail), number_(number), began_(enabled() ? microseconds() : 0) {}

CallTrace::~CallTrace() {
    if (!enabled()) {
        return;
    }
    const int error = errno;
    const int64_t length = microseconds() - began_;
    char number[24] = "";
    if (number_ != kNoNumber) {
        snprintf(number, sizeof number, "%" PRId64, number_);
    }
    char line[256];
    const char* const separator = *detail_ != '\0' || *number != '\0' ? " " : "";
    const int size = snprintf(line, sizeof line - 1, "%" PRId64 " %" PRId64 " %s%s%.160s%s", began_, length, call_,
                              separator, detail_, number);
    const std::size_t used = std::strlen(line);
    line[used] = '\n';
    /* Opened for each line: a kept descriptor could be closed by the client and become another file's. */
    const UniqueFd file(open(traceFile(), kLogFileFlags, kLogFileMode));
    if (size < 0 || !file.valid() || write(file.get(), line, used + 1) < 0) {
        complainOnce(traceFile());
    }
    errno = error;
}

}  // namespace vaultpad::host
