// Packing as the channel calls it: against a second formula, and its turns as an algebra.
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

// Each component has its low two bits clear, so that packing loses nothing and turns can follow each other.
Image randomImage(std::size_t width, std::size_t height) {
    Words words = randomWords(width * height);
    std::transform(words.begin(), words.end(), words.begin(), [](std::uint32_t word) { return word & 0xFCFCFCFC; });
    return {width, height, words};
}

Words unpacked(const Bytes& bytes) {
    Words words;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t value = std::uint32_t{bytes[i]} << 16 | std::uint32_t{bytes[i + 1]} << 8 | bytes[i + 2];
        words.push_back((value >> 18 & 0x3F) << 26 | (value >> 12 & 0x3F) << 18 | (value >> 6 & 0x3F) << 10 |
                        (value & 0x3F) << 2);
    }
    return words;
}

using PackCorner = void (*)(const std::uint32_t*, std::size_t, std::size_t, std::size_t, std::uint8_t*);

Image turned(PackCorner pack, const Image& image) {
    Bytes bytes(image.words.size() * 3);
    pack(image.words.data(), image.width, image.width, image.height, bytes.data());
    return {image.height, image.width, unpacked(bytes)};
}

Image clockwise(const Image& image) {
    return turned(packCornerClockwise, image);
}

Image counterClockwise(const Image& image) {
    return turned(packCornerCounterClockwise, image);
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

TEST(PixelTurns, ClockwiseTakesEachPixelToItsPlace) {
    //  4  8 12      16  4
    // 16 20 24  ->  20  8
    //               24 12
    EXPECT_EQ(clockwise({3, 2, {4, 8, 12, 16, 20, 24}}), (Image{2, 3, {16, 4, 20, 8, 24, 12}}));
}

TEST(PixelTurns, CounterClockwiseTakesEachPixelToItsPlace) {
    //  4  8 12      12 24
    // 16 20 24  ->   8 20
    //                4 16
    EXPECT_EQ(counterClockwise({3, 2, {4, 8, 12, 16, 20, 24}}), (Image{2, 3, {12, 24, 8, 20, 4, 16}}));
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
