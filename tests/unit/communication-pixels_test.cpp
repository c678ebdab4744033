// The pixel kernels, as an algebra and against a second formula.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <vector>

#include "communication/pixel-packing.h"

namespace vaultpad::communication {

namespace {

using Words = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;

// A fixed seed: the same words on every run.
Words randomWords(std::size_t count) {
    std::mt19937 generator(20240607);
    Words words(count);
    std::generate(words.begin(), words.end(), [&generator] { return static_cast<std::uint32_t>(generator()); });
    return words;
}

struct Image {
    std::size_t width;
    std::size_t height;
    Words words;

    bool operator==(const Image& other) const {
        return width == other.width && height == other.height && words == other.words;
    }
};

Image randomImage(std::size_t width, std::size_t height) {
    return {width, height, randomWords(width * height)};
}

Image clockwise(const Image& image) {
    Image turned{image.height, image.width, Words(image.words.size())};
    turnClockwise(image.words.data(), image.width, image.height, turned.words.data());
    return turned;
}

Image counterClockwise(const Image& image) {
    Image turned{image.height, image.width, Words(image.words.size())};
    turnCounterClockwise(image.words.data(), image.width, image.height, turned.words.data());
    return turned;
}

Image halfTurn(const Image& image) {
    Image turned = image;
    std::reverse(turned.words.begin(), turned.words.end());
    return turned;
}

Bytes packed(const Words& words, std::size_t width) {
    Bytes bytes(words.size() * 3);
    packCorner(words.data(), width, width, words.size() / width, bytes.data());
    return bytes;
}

// The same packing put byte by byte.
Bytes packedByBytes(const Words& words) {
    Bytes bytes;
    for (const std::uint32_t word : words) {
        const unsigned a = word >> 24 & 0xFF;
        const unsigned r = word >> 16 & 0xFF;
        const unsigned g = word >> 8 & 0xFF;
        const unsigned b = word & 0xFF;
        bytes.push_back(static_cast<std::uint8_t>((a & 0xFC) | r >> 6));
        bytes.push_back(static_cast<std::uint8_t>((r >> 2 & 0x0F) << 4 | g >> 4));
        bytes.push_back(static_cast<std::uint8_t>((g >> 2 & 0x03) << 6 | b >> 2));
    }
    return bytes;
}

}  // namespace

TEST(PixelPacking, PacksTwoPixelsIntoSixBytes) {
    EXPECT_EQ(packed({0xFF112233, 0x80FFFFFF}, 2), (Bytes{0xFC, 0x42, 0x0C, 0x83, 0xFF, 0xFF}));
}

TEST(PixelPacking, AgreesWithTheBytewiseFormulaOnRandomWords) {
    const Words words = randomWords(97 * 101);
    EXPECT_EQ(packed(words, 97), packedByBytes(words));
}

TEST(PixelPacking, KeepsEachComponentToItself) {
    EXPECT_EQ(packed({0xFC000000}, 1), (Bytes{0xFC, 0x00, 0x00}));
    EXPECT_EQ(packed({0x00FC0000}, 1), (Bytes{0x03, 0xF0, 0x00}));
    EXPECT_EQ(packed({0x0000FC00}, 1), (Bytes{0x00, 0x0F, 0xC0}));
    EXPECT_EQ(packed({0x000000FC}, 1), (Bytes{0x00, 0x00, 0x3F}));
    EXPECT_EQ(packed({0x03030303}, 1), (Bytes{0x00, 0x00, 0x00}));
}

TEST(PixelPacking, TakesTheTopLeftCornerOfAWiderImage) {
    const Words canvas = randomWords(5 * 4);
    Bytes bytes(2 * 3 * 3);
    packCorner(canvas.data(), 5, 2, 3, bytes.data());
    EXPECT_EQ(bytes, packedByBytes({canvas[0], canvas[1], canvas[5], canvas[6], canvas[10], canvas[11]}));
}

TEST(PixelPacking, CopiesTheTopLeftCornerOfAWiderImage) {
    const Words canvas = randomWords(5 * 4);
    Words corner(2 * 3);
    copyCorner(canvas.data(), 5, 2, 3, corner.data());
    EXPECT_EQ(corner, (Words{canvas[0], canvas[1], canvas[5], canvas[6], canvas[10], canvas[11]}));
}

TEST(PixelTurns, ClockwiseTakesEachPixelToItsPlace) {
    // a b c      d a
    // d e f  ->  e b
    //            f c
    EXPECT_EQ(clockwise({3, 2, {'a', 'b', 'c', 'd', 'e', 'f'}}), (Image{2, 3, {'d', 'a', 'e', 'b', 'f', 'c'}}));
}

TEST(PixelTurns, CounterClockwiseTakesEachPixelToItsPlace) {
    // a b c      c f
    // d e f  ->  b e
    //            a d
    EXPECT_EQ(counterClockwise({3, 2, {'a', 'b', 'c', 'd', 'e', 'f'}}), (Image{2, 3, {'c', 'f', 'b', 'e', 'a', 'd'}}));
}

class PixelTurnsOf : public testing::TestWithParam<std::pair<std::size_t, std::size_t>> {
protected:
    const Image image = randomImage(GetParam().first, GetParam().second);
};

TEST_P(PixelTurnsOf, FourQuarterTurnsAreTheIdentity) {
    EXPECT_EQ(clockwise(clockwise(clockwise(clockwise(image)))), image);
    EXPECT_EQ(counterClockwise(counterClockwise(counterClockwise(counterClockwise(image)))), image);
}

TEST_P(PixelTurnsOf, ClockwiseUndoesCounterClockwise) {
    EXPECT_EQ(clockwise(counterClockwise(image)), image);
    EXPECT_EQ(counterClockwise(clockwise(image)), image);
}

TEST_P(PixelTurnsOf, TwoQuarterTurnsReverseTheImageBothWays) {
    EXPECT_EQ(clockwise(clockwise(image)), halfTurn(image));
    EXPECT_EQ(counterClockwise(counterClockwise(image)), halfTurn(image));
}

INSTANTIATE_TEST_SUITE_P(, PixelTurnsOf,
                         testing::Values(std::pair{1, 1}, std::pair{1, 7}, std::pair{9, 1}, std::pair{4, 4},
                                         std::pair{13, 5}, std::pair{64, 33}),
                         [](const auto& tested) {
                             return std::to_string(tested.param.first) + "x" + std::to_string(tested.param.second);
                         });

}  // namespace vaultpad::communication
