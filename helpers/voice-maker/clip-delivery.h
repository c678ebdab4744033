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
    /* receiver: the process that the clips are for. patience: how long its socket is waited for, from here on. */
    ClipDelivery(const EndWatch& watch, pid_t receiver, std::chrono::milliseconds patience = std::chrono::seconds(5));

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
