#include "voice-samples.h"

#include <gtest/gtest.h>
#include <zlib.h>

namespace vaultpad::secureworld {

Bytes waveFile(std::uint16_t sample, std::size_t samples) {
    const auto size = static_cast<std::uint32_t>(2 * samples);
    const auto text = [](const char* word) { return Bytes(word, word + 4); };
    Writer writer;
    writer.blob(text("RIFF")).word(36 + size).blob(text("WAVE"));
    writer.blob(text("fmt ")).word(16).blob({1, 0, 1, 0}).word(22050).word(44100).blob({2, 0, 16, 0});
    writer.blob(text("data")).word(size);
    for (std::size_t i = 0; i < samples; ++i) {
        writer.blob({static_cast<std::uint8_t>(sample & 0xff), static_cast<std::uint8_t>(sample >> 8)});
    }
    return writer.bytes();
}

std::vector<SampleClip> pinPadClips() {
    std::vector<SampleClip> result;
    for (const char* id : {"label.title", "key.1", "key.2", "key.3", "key.4", "key.5", "key.7", "key.8", "key.9",
                           "key.0", "key.Clear", "key.BackSpace", "key.Cancel", "key.Return"}) {
        result.push_back({id, waveFile(static_cast<std::uint16_t>(1000 + result.size()))});
    }
    return result;
}

Bytes soundOf(const std::vector<SampleClip>& clips, const std::string& id) {
    for (const SampleClip& clip : clips) {
        if (clip.id == id) {
            return clip.sound;
        }
    }
    ADD_FAILURE() << "no clip " << id;
    return {};
}

Bytes compressed(const Bytes& sound) {
    Bytes result(compressBound(sound.size()));
    uLongf size = result.size();
    EXPECT_EQ(Z_OK, compress(result.data(), &size, sound.data(), sound.size()));
    result.resize(size);
    return result;
}

Bytes clipsRequest(const std::vector<SampleClip>& clips) {
    Writer writer;
    writer.word(static_cast<std::uint32_t>(clips.size()));
    for (const SampleClip& clip : clips) {
        const Bytes data = compressed(clip.sound);
        writer.string(clip.id)
            .word(static_cast<std::uint32_t>(data.size()))
            .word(static_cast<std::uint32_t>(clip.sound.size()))
            .blob(data);
    }
    return writer.bytes();
}

}  // namespace vaultpad::secureworld
