// Messages of the voice maker, each a connection, to the receiver's real socket.
#include <algorithm>

#include "fuzzer.h"
#include "voice-fixture.h"

using vaultpad::audio::VoiceMessage;
using vaultpad::fuzz::Input;
using vaultpad::fuzz::VoiceFixture;

namespace {

constexpr int kVoices = 3;
constexpr int kMessagesMax = 12;

// A message whose fields are near those that the receiver takes; data shorter than announced are zeroes.
VoiceMessage likelyMessage(Input& input) {
    VoiceMessage message = {};
    message.index = static_cast<std::int8_t>(input.byte());
    message.length = static_cast<std::int16_t>(input.shortWord());
    message.final = static_cast<std::int8_t>(input.byte());
    const std::vector<std::uint8_t> data = input.bytes(input.byte());
    std::copy(data.begin(), data.end(), message.data);
    return message;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const VoiceFixture fixture(kVoices);
    VoiceFixture::create();
    Input input(data, size);
    for (int i = 0; i < kMessagesMax && !input.empty(); ++i) {
        const std::uint8_t form = input.byte();
        if (form % 2 == 0) {
            const VoiceMessage message = likelyMessage(input);
            VoiceFixture::send(&message, sizeof(message));
        } else {
            const std::vector<std::uint8_t> bytes = input.bytes(form);
            VoiceFixture::send(bytes.data(), bytes.size());
        }
    }
    VoiceFixture::complete();
    VoiceFixture::upload();
    return 0;
}
