/* Waiting for a descriptor for a bounded time, whatever signals come in between. */
#ifndef VAULTPAD_PLATFORM_HOST_POLL_UNTIL_H
#define VAULTPAD_PLATFORM_HOST_POLL_UNTIL_H

#include <chrono>

namespace vaultpad::host {

using PollClock = std::chrono::steady_clock;

enum class PollResult { kReady, kTimedOut, kFailed };

/* events: those of poll(). A hung-up descriptor is ready: the next call on it tells. */
PollResult pollUntil(int fd, short events, PollClock::time_point deadline) noexcept;

}  // namespace vaultpad::host

#endif
