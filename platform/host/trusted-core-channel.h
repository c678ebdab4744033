/* The socket pair between a session and its trusted application (TA). */
#ifndef VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_CHANNEL_H
#define VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_CHANNEL_H

#include <array>
#include <cstddef>

#include "poll-until.h"
#include "secure-channel-wire.h"
#include "unique-fd.h"

namespace vaultpad::host {

/* What came of a request. After anything but the first two, the channel is of no more use. */
enum class Exchange { kAccepted, kRefused, kEnded, kTimedOut, kGarbled };

/* The descriptors of the blocks that a request announces, in the same order. */
using BlockDescriptors = std::array<int, VAULTPAD_CHANNEL_BLOCKS_MAX>;

class TaChannel {
public:
    /* Makes the pair and hands out the TA's end, which the caller closes once the TA has it. Returns 0, or an errno. */
    int open(UniqueFd& taEnd);

    /* Sends a request with its blocks' descriptors and waits for the reply. */
    Exchange exchange(const VaultPadChannelRequest& request, const BlockDescriptors& descriptors,
                      PollClock::time_point deadline);

    /* The TA finds the end of the file. */
    void close() { socket_.reset(); }

private:
    Exchange send(const VaultPadChannelRequest& request, const BlockDescriptors& descriptors,
                  PollClock::time_point deadline);
    Exchange receive(uint32_t kind, PollClock::time_point deadline);

    UniqueFd socket_;
};

}  // namespace vaultpad::host

#endif
