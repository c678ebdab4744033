/* What the voice maker sends to the library: the wire layout of one message, and the socket it is sent to. */
#ifndef VAULTPAD_SOURCE_AUDIO_VOICE_MESSAGE_H
#define VAULTPAD_SOURCE_AUDIO_VOICE_MESSAGE_H

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdint>
#include <cstring>

namespace vaultpad::audio {

constexpr int kVoiceMessageCapacity = 24000;

/* Native byte order. One message per connection. */
struct VoiceMessage {
    std::int32_t index;  /* of the clip */
    std::int32_t length; /* how many bytes of data are used */
    std::int32_t final;  /* 1 on the clip's last chunk */
    std::uint8_t data[kVoiceMessageCapacity];
};
static_assert(sizeof(VoiceMessage) == 24012, "the message's layout is fixed");

constexpr char kVoiceSocketName[] = "vaultpad_voice.socket";

/* The abstract address, zero-padded: both ends pass all 110 bytes of it. */
inline sockaddr_un voiceSocketAddress() {
    static_assert(sizeof(sockaddr_un) == 110, "both ends use the whole address");
    sockaddr_un address;
    std::memset(&address, 0, sizeof(address));
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, kVoiceSocketName, sizeof(kVoiceSocketName) - 1);
    return address;
}

}  // namespace vaultpad::audio

#endif
