// Clips of any name and sound: compressed, sent in batches, and read by the emulated TA.
#include <algorithm>

#include "fuzzer.h"
#include "platform-double.h"
#include "voice-fixture.h"
#include "voice/wave-file.h"

using vaultpad::audio::VoiceGuide;
using vaultpad::fuzz::Input;
using vaultpad::fuzz::VoiceFixture;

namespace {

// Two batches.
constexpr int kVoices = 17;

constexpr std::size_t kWaveHeaderSize = 44;

std::vector<std::uint8_t> waveFileOf(const std::vector<std::uint8_t>& samples) {
    const auto sound = std::make_shared<vaultpad::secureworld::Sound>(kWaveHeaderSize + samples.size());
    std::copy(samples.begin(), samples.end(), sound->begin() + kWaveHeaderSize);
    return vaultpad::secureworld::joinedWaveFile({{"", sound}});
}

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
    bool allGood = true;
    for (auto& clip : clips) {
        clip.id = input.text(input.byte());
        clip.data = input.bytes(input.byte());
        // A long clip of few input bytes.
        const std::size_t repeat = input.byte();
        clip.data.insert(clip.data.end(), repeat * repeat, input.byte());
        const bool sound = input.byte() % 8 != 0;
        if (sound) {
            clip.data.resize(clip.data.size() / 2 * 2);
            clip.data = waveFileOf(clip.data);
        }
        allGood = allGood && sound && clip.id.c_str()[0] != '\0';
    }
    const bool taken = VoiceFixture::upload();
    vaultpad::fuzz::require(taken || !allGood);
    return 0;
}
