#include "poll-until.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace vaultpad::host {

PollResult pollUntil(int fd, short events, PollClock::time_point deadline) noexcept {
    using Milliseconds = std::chrono::duration<int, std::milli>;
    for (;;) {
        const auto left = std::chrono::ceil<Milliseconds>(deadline - PollClock::now());
        pollfd wanted = {fd, events, 0};
        const int ready = poll(&wanted, 1, std::max(left.count(), 0));
        if (ready > 0) {
            return PollResult::kReady;
        }
        if (ready == 0) {
            return PollResult::kTimedOut;
        }
        if (errno != EINTR) {
            return PollResult::kFailed;
        }
    }
}

}  // namespace vaultpad::host
