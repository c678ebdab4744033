/*
 * What the library and the voice maker share: the wire layout of one message, the socket it is sent to, and the order
 * of the clips. The voice maker includes this header and nothing else of the library.
 */
#ifndef VAULTPAD_SOURCE_AUDIO_VOICE_MESSAGE_H
#define VAULTPAD_SOURCE_AUDIO_VOICE_MESSAGE_H

#include <sys/socket.h>
#include <sys/un.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <unordered_map>

namespace vaultpad::audio {

constexpr int kVoiceMessageCapacity = 24000;

/* What a clip may hold: 19 full messages, ten seconds of speech. A batch of the largest clips fits its block. */
constexpr int kVoiceClipCapacity = 19 * kVoiceMessageCapacity;

/*
 * The voices by id. A clip's index is its id's place in a walk over this collection, when the voice file's items were
 * put into it in the file's order: on both ends the same collection of the same standard library.
 */
template <typename Voice>
using VoiceCollection = std::unordered_map<std::string, Voice>;

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
