/* Takes clips to the library, message by message. */
#ifndef VAULTPAD_HELPERS_VOICE_MAKER_CLIP_DELIVERY_H
#define VAULTPAD_HELPERS_VOICE_MAKER_CLIP_DELIVERY_H

#include <sys/types.h>

#include <chrono>

#include "end-watch.h"
#include "voice-maker/wave-file.h"
#include "voice-message.h"

namespace vaultpad::helpers {

class ClipDelivery {
public:
    /* How long the receiver's socket is waited for. */
    static constexpr std::chrono::seconds kPatience{5};

    /* receiver: the process that the clips are for. The time that it is waited for runs from here. */
    ClipDelivery(const EndWatch& watch, pid_t receiver);

    /*
     * Sends the clip, one connection for each message. Waits for the receiver before the first one; later a receiver
     * that is gone has all that it wants, or wants no more. False, with the reason on stderr, when it was not taken.
     */
    bool deliver(int index, const Bytes& clip);

private:
    bool send(const audio::VoiceMessage& message);
    int connection();
    int tryToConnect() const;

    const EndWatch& watch_;
    pid_t receiver_;
    std::chrono::steady_clock::time_point deadline_;
    bool connected_ = false;
};

}  // namespace vaultpad::helpers

#endif
