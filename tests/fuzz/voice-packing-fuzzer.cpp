// Clips of any name and contents: compressed, sent in batches, and read by the emulated TA.
#include "fuzzer.h"
#include "platform-double.h"
#include "voice-fixture.h"

using vaultpad::audio::VoiceGuide;
using vaultpad::fuzz::Input;
using vaultpad::fuzz::VoiceFixture;

namespace {

// Two batches.
constexpr int kVoices = 17;

void createOnce() {
    static const VoiceFixture fixture(kVoices);
    VoiceFixture::create();
    VoiceFixture::complete();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool created = (createOnce(), true);
    static_cast<void>(created);
    vaultpad::test::platform().clearJournal();
    vaultpad::test::platform().clearLog();
    Input input(data, size);
    auto& clips = VoiceGuide::instance().clips();
    clips.assign(kVoices, {});
    for (auto& clip : clips) {
        clip.id = input.text(input.byte());
        clip.data = input.bytes(input.byte());
        // A long clip of few input bytes.
        const std::size_t repeat = input.byte();
        clip.data.insert(clip.data.end(), repeat * repeat, input.byte());
    }
    VoiceFixture::upload();
    return 0;
}
