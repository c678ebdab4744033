// A clip's form.
#include "voice-maker/wave-file.h"

#include <gmock/gmock.h>

namespace vaultpad::helpers {

namespace {

using testing::IsEmpty;
using testing::Optional;

/* A stream as espeak-ng writes it: with placeholders for both sizes. */
Bytes stream(std::size_t dataSize) {
    Bytes bytes = {'R', 'I', 'F', 'F', 0x24, 0xF0, 0xFF, 0x7F, 'W', 'A',  'V',  'E',  'f',  'm',  't',
                   ' ', 16,  0,   0,   0,    1,    0,    1,    0,   0x22, 0x56, 0,    0,    0x44, 0xAC,
                   0,   0,   2,   0,   16,   0,    'd',  'a',  't', 'a',  0x00, 0xF0, 0xFF, 0x7F};
    bytes.resize(44 + dataSize, 7);
    return bytes;
}

std::uint32_t word(const Bytes& bytes, std::size_t offset) {
    std::uint32_t result = 0;
    for (std::size_t i = 4; i > 0; --i) {
        result = result << 8 | bytes[offset + i - 1];
    }
    return result;
}

}  // namespace

TEST(WaveFile, SizesAreThoseOfTheData) {
    const std::optional<Bytes> clip = completeWave(stream(70000));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->size(), 70044u);
    EXPECT_EQ(word(*clip, 4), 70036u);
    EXPECT_EQ(word(*clip, 40), 70000u);
    EXPECT_EQ(clip->back(), 7);
}

TEST(WaveFile, HalfASampleAtTheEndIsLeftOut) {
    const std::optional<Bytes> clip = completeWave(stream(101));
    ASSERT_TRUE(clip);
    EXPECT_EQ(clip->size(), 144u);
    EXPECT_EQ(word(*clip, 40), 100u);
}

TEST(WaveFile, StreamWithoutSoundIsAnEmptyClip) {
    EXPECT_THAT(completeWave(stream(0)), Optional(IsEmpty()));
}

TEST(WaveFile, StreamThatEndsInItsHeaderIsRefused) {
    Bytes cut = stream(0);
    cut.pop_back();
    EXPECT_FALSE(completeWave(cut));
    EXPECT_FALSE(completeWave({}));
}

// Every byte of the header but the sizes' counts: format, channels, rate, sample size.
TEST(WaveFile, StreamOfAnotherFormIsRefused) {
    for (std::size_t offset = 0; offset < 44; ++offset) {
        Bytes other = stream(100);
        other[offset] ^= 1;
        const bool isSize = (offset >= 4 && offset < 8) || offset >= 40;
        EXPECT_EQ(completeWave(other).has_value(), isSize) << offset;
    }
}

}  // namespace vaultpad::helpers
