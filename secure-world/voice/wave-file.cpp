#include "voice/wave-file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "session/refusal.h"

namespace vaultpad::secureworld {

namespace {

constexpr std::uint32_t kSampleRate = 22050;
constexpr std::uint32_t kChannels = 1;
constexpr std::uint32_t kBytesPerSample = 2;
constexpr std::uint32_t kPcm = 1;
constexpr std::uint32_t kFormatSize = 16;
constexpr std::size_t kHeaderSize = 44;

void append(Sound* header, std::string_view text) {
    // Byte by byte: optimised, insert() draws a warning that the compiler is wrong about.
    for (const char character : text) {
        header->push_back(static_cast<std::uint8_t>(character));
    }
}

// Little-endian.
void append(Sound* header, std::uint32_t value, unsigned bytes) {
    for (unsigned i = 0; i < bytes; ++i) {
        header->push_back(static_cast<std::uint8_t>(value >> (8 * i) & 0xff));
    }
}

Sound headerOf(std::size_t dataSize) {
    Sound header;
    append(&header, "RIFF");
    append(&header, static_cast<std::uint32_t>(kHeaderSize - 8 + dataSize), 4);
    append(&header, "WAVEfmt ");
    append(&header, kFormatSize, 4);
    append(&header, kPcm, 2);
    append(&header, kChannels, 2);
    append(&header, kSampleRate, 4);
    append(&header, kSampleRate * kChannels * kBytesPerSample, 4);
    append(&header, kChannels * kBytesPerSample, 2);
    append(&header, kBytesPerSample * 8, 2);
    append(&header, "data");
    append(&header, static_cast<std::uint32_t>(dataSize), 4);
    return header;
}

}  // namespace

void checkWaveFile(const Sound& sound) {
    if (sound.empty()) {
        return;
    }
    // The format leaves nothing but the sizes open, so the header can only be this one.
    const bool whole = sound.size() >= kHeaderSize && (sound.size() - kHeaderSize) % kBytesPerSample == 0;
    const Sound header = headerOf(whole ? sound.size() - kHeaderSize : 0);
    if (!whole || !std::equal(header.begin(), header.end(), sound.begin())) {
        throw Refusal("a clip of " + std::to_string(sound.size()) +
                      " bytes is no WAV file of 16-bit mono PCM at 22050 Hz");
    }
}

Sound joinedWaveFile(const std::vector<VoiceClip>& clips) {
    std::size_t dataSize = 0;
    for (const VoiceClip& clip : clips) {
        dataSize += clip.sound->size() - kHeaderSize;
    }
    Sound result = headerOf(dataSize);
    for (const VoiceClip& clip : clips) {
        result.insert(result.end(), clip.sound->begin() + kHeaderSize, clip.sound->end());
    }
    return result;
}

}  // namespace vaultpad::secureworld
