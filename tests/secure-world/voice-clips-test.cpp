// Voice clips that are refused without a trace.
#include "voice/voice-clips.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "sample-pads.h"
#include "session/refusal.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"
#include "voice-samples.h"
#include "voice/wave-file.h"

namespace vaultpad::secureworld {
namespace {

struct BadClips {
    const char* name;
    Bytes request;
    const char* reason;
};

void PrintTo(const BadClips& bad, std::ostream* out) {
    *out << bad.name;
}

class BadVoiceClips : public testing::TestWithParam<BadClips> {};

Bytes contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), {});
}

TEST_P(BadVoiceClips, AreRefusedWithTheWholeBatch) {
    const TemporaryFolder folder;
    TaClient::Setup setup;
    setup.options = {"--voice", "files", "--voice-folder", folder / "voice"};
    TaClient client(setup);
    ASSERT_NO_FATAL_FAILURE(preparePad(&client));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, clipsRequest({{"key.1", waveFile(1)}}))) << client.log();
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, GetParam().request));
    EXPECT_NE(std::string::npos, client.log().find("event 4 refused: ")) << client.log();
    EXPECT_NE(std::string::npos, client.log().find(GetParam().reason)) << client.log();
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_SHOW));
    EXPECT_EQ(waveFile(1), contentOf(folder / "voice/voice-0001-key.1.wav"));
}

// A batch whose first clip, for key.1, is fine; count is what the batch says it holds.
Writer batchOf(std::uint32_t count) {
    const Bytes sound = waveFile(2);
    const Bytes data = compressed(sound);
    Writer writer;
    writer.word(count)
        .string("key.1")
        .word(static_cast<std::uint32_t>(data.size()))
        .word(static_cast<std::uint32_t>(sound.size()))
        .blob(data);
    return writer;
}

// The second clip of a batch, with the data and the sizes given.
Bytes clip(const Bytes& data, std::size_t size, std::size_t compressedSize, const std::string& id = "key.2") {
    return batchOf(2)
        .string(id)
        .word(static_cast<std::uint32_t>(compressedSize))
        .word(static_cast<std::uint32_t>(size))
        .blob(data)
        .bytes();
}

Bytes clip(const Bytes& data, std::size_t size) {
    return clip(data, size, data.size());
}

Bytes sound(const Bytes& content) {
    return clip(compressed(content), content.size());
}

Bytes with(Bytes bytes, std::size_t place, std::uint8_t value) {
    bytes.at(place) = value;
    return bytes;
}

Bytes longer(Bytes bytes) {
    bytes.push_back(0);
    return bytes;
}

Bytes shorter(Bytes bytes) {
    bytes.pop_back();
    return bytes;
}

std::vector<BadClips> badBlocks() {
    const Bytes good = compressed(waveFile(3));
    const std::size_t size = waveFile(3).size();
    return {
        {"SixteenClips", Writer().word(16).bytes(), "clip count is 16"},
        {"NoCount", Bytes{1, 0, 0}, "clip count takes 4"},
        {"MoreClipsThanThereAre", batchOf(2).bytes(), "clip id has no end"},
        {"FewerClipsThanThereAre", with(clip(good, size), 0, 1), "follow the last value"},
        {"IdWithoutEnd", batchOf(2).blob(Bytes(600, 'x')).bytes(), "clip id has no end within 512"},
        {"NoId", clip(good, size, good.size(), ""), "no id or no data"},
        {"NoData", clip({}, 0), "no id or no data"},
        {"CutOff", shorter(clip(good, size)), "clip takes"},
        {"LargerThanTheBlock", clip(good, size, 0xffffffffu), "clip takes 4294967295"},
        {"TrailingBytes", longer(clip(good, size)), "follow the last value"},
    };
}

std::vector<BadClips> badStreams() {
    const Bytes wave = waveFile(3);
    const Bytes good = compressed(wave);
    const std::size_t size = wave.size();
    const std::size_t bombSize = std::size_t{5} << 20;
    const Bytes bomb = compressed(Bytes(bombSize));
    return {
        {"NoStream", clip(Bytes(8, 0x55), 8), "no whole zlib stream"},
        {"BrokenStream", clip(with(good, good.size() - 1, static_cast<std::uint8_t>(good.back() + 1)), size),
         "no whole zlib stream"},
        {"CutStream", clip(shorter(good), size), "no whole zlib stream"},
        {"BytesBehindTheStream", clip(longer(good), size), "1 bytes follow a clip's zlib stream"},
        {"MoreThanItSays", clip(good, size - 1), "inflates to more than"},
        {"LessThanItSays", clip(good, size + 1), "inflates to"},
        {"SomethingForNothing", clip(good, 0), "inflates to more than its 0 bytes"},
        {"NothingForSomething", clip(compressed({}), 8), "inflates to 0 bytes instead of 8"},
        {"OneByteForNothing", clip(compressed({7}), 0), "inflates to more than its 0 bytes"},
        {"AboveTheLimit", clip(good, (4u << 20) + 1), "uncompressed size is 4194305"},
        {"Bomb", clip(bomb, bombSize), "uncompressed size is 5242880"},
        {"BombThatSaysItIsSmall", clip(bomb, 44), "inflates to more than its 44 bytes"},
    };
}

std::vector<BadClips> badSounds() {
    const Bytes wave = waveFile(3);
    return {
        {"Text", sound(Bytes(44, 'x')), "is no WAV file"},
        {"HalfAHeader", sound(Bytes(wave.begin(), wave.begin() + 43)), "is no WAV file"},
        {"OtherContainer", sound(with(wave, 0, 'F')), "is no WAV file"},
        {"OtherKind", sound(with(wave, 8, 'A')), "is no WAV file"},
        {"WrongRiffSize", sound(with(wave, 4, 0)), "is no WAV file"},
        {"LongFormat", sound(with(wave, 16, 18)), "is no WAV file"},
        {"NotPcm", sound(with(wave, 20, 3)), "is no WAV file"},
        {"Stereo", sound(with(wave, 22, 2)), "is no WAV file"},
        {"OtherRate", sound(with(wave, 24, 0)), "is no WAV file"},
        {"EightBit", sound(with(wave, 34, 8)), "is no WAV file"},
        {"WrongDataSize", sound(with(wave, 40, 0)), "is no WAV file"},
        {"HalfASample", sound(shorter(wave)), "is no WAV file"},
        {"StrayByte", sound(longer(waveFile(3, 0))), "is no WAV file"},
        {"CutFile", sound(shorter(shorter(wave))), "is no WAV file"},
    };
}

const auto nameOf = [](const testing::TestParamInfo<BadClips>& info) { return std::string(info.param.name); };
INSTANTIATE_TEST_SUITE_P(Block, BadVoiceClips, testing::ValuesIn(badBlocks()), nameOf);
INSTANTIATE_TEST_SUITE_P(Stream, BadVoiceClips, testing::ValuesIn(badStreams()), nameOf);
INSTANTIATE_TEST_SUITE_P(Sound, BadVoiceClips, testing::ValuesIn(badSounds()), nameOf);

std::shared_ptr<const Sound> soundOfSize(std::size_t size) {
    return std::make_shared<const Sound>(size);
}

TEST(VoiceClips, TakeNoMoreBytesThanTheirLimitAndReplacedClipsDoNotCount) {
    VoiceClips clips;
    const auto quarter = soundOfSize(VoiceClips::kBytesMax / 4);
    clips.add({{"a", quarter}, {"b", quarter}, {"c", quarter}, {"d", quarter}});
    clips.add({{"a", quarter}, {"b", quarter}});
    EXPECT_THROW(clips.add({{"a", soundOfSize(1)}, {"e", quarter}, {"f", soundOfSize(1)}}), Refusal);
    EXPECT_EQ(quarter, clips.find("a")->sound);
    EXPECT_EQ(nullptr, clips.find("e"));
}

TEST(VoiceClips, TakeNoMoreClipsThanTheirLimit) {
    VoiceClips clips;
    const auto sound = soundOfSize(1);
    for (std::size_t i = 0; i < VoiceClips::kClipsMax; ++i) {
        clips.add({{std::to_string(i), sound}});
    }
    EXPECT_THROW(clips.add({{"one more", sound}}), Refusal);
    clips.add({{"0", sound}});
}

TEST(WaveFile, JoinsClipsIntoOneWholeFile) {
    const auto shared = [](const Bytes& bytes) { return std::make_shared<const Sound>(bytes); };
    Bytes expected = waveFile(1, 5);
    const Bytes second = waveFile(2, 3);
    expected.insert(expected.end(), second.begin() + 44, second.end());
    expected[4] = 36 + 16;
    expected[40] = 16;
    EXPECT_EQ(expected, joinedWaveFile({{"a", shared(waveFile(1, 5))}, {"b", shared(second)}}));
    EXPECT_NO_THROW(checkWaveFile(expected));
}

}  // namespace
}  // namespace vaultpad::secureworld
