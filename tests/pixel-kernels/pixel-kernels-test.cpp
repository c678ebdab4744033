// Every kernel that this processor runs, against a second formula and inside guarded memory.
#include "communication/pixel-kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "guarded-memory.h"

namespace vaultpad::communication {

namespace {

using test::Edge;
using test::GuardedMemory;
using Words = std::vector<std::uint32_t>;
using Bytes = std::vector<std::uint8_t>;

// Below, at and above the blocks and tiles of every kernel; primes; and the PIN pad's background.
constexpr std::size_t kWidths[] = {1, 2, 3, 4, 5, 7, 8, 15, 16, 17, 31, 32, 33, 37, 64, 97, 443};
constexpr std::size_t kHeights[] = {1, 2, 3, 7, 8, 9, 13, 15, 16, 17, 23, 31, 33, 101, 486};
constexpr std::size_t kBesideTheCorner[] = {0, 1, 29};

// A fixed seed: the same words on every run.
const Words& someWords() {
    static const Words words = [] {
        std::mt19937 generator(20240607);
        Words made((443 + 29) * 486);
        std::generate(made.begin(), made.end(), [&generator] { return static_cast<std::uint32_t>(generator()); });
        return made;
    }();
    return words;
}

struct Size {
    std::size_t stride;
    std::size_t width;
    std::size_t height;
};

void putPacked(std::uint32_t word, std::uint8_t* packed) {
    const unsigned a = word >> 24 & 0xFF;
    const unsigned r = word >> 16 & 0xFF;
    const unsigned g = word >> 8 & 0xFF;
    const unsigned b = word & 0xFF;
    packed[0] = static_cast<std::uint8_t>((a & 0xFC) | r >> 6);
    packed[1] = static_cast<std::uint8_t>((r >> 2 & 0x0F) << 4 | g >> 4);
    packed[2] = static_cast<std::uint8_t>((g >> 2 & 0x03) << 6 | b >> 2);
}

// Where pixel (row, column) of an image goes, counted in pixels.
using Place = std::size_t (*)(const Size& size, std::size_t row, std::size_t column);

std::size_t upright(const Size& size, std::size_t row, std::size_t column) {
    return row * size.width + column;
}

std::size_t clockwise(const Size& size, std::size_t row, std::size_t column) {
    return column * size.height + (size.height - 1 - row);
}

std::size_t counterClockwise(const Size& size, std::size_t row, std::size_t column) {
    return (size.width - 1 - column) * size.height + row;
}

Bytes expected(const Size& size, Place place) {
    Bytes bytes(size.width * size.height * 3);
    for (std::size_t row = 0; row < size.height; ++row) {
        for (std::size_t column = 0; column < size.width; ++column) {
            putPacked(someWords()[row * size.stride + column], &bytes[place(size, row, column) * 3]);
        }
    }
    return bytes;
}

using PackCorner = void (*)(const PixelKernels&, const std::uint32_t*, std::size_t, std::size_t, std::size_t,
                            std::uint8_t*);

// The source ends with the corner's last pixel, not with its row.
void expectPacked(const PixelKernels& kernels, PackCorner pack, const Size& size, Place place, Edge edge) {
    GuardedMemory source(((size.height - 1) * size.stride + size.width) * sizeof(std::uint32_t), edge);
    std::memcpy(source.data(), someWords().data(), static_cast<std::size_t>(source.end() - source.data()));
    GuardedMemory packed(size.width * size.height * 3, edge);
    pack(kernels, reinterpret_cast<const std::uint32_t*>(source.data()), size.stride, size.width, size.height,
         packed.data());
    EXPECT_TRUE(packed.isIntactAround());
    EXPECT_EQ(Bytes(static_cast<const std::uint8_t*>(packed.data()), packed.end()), expected(size, place));
}

std::vector<Size> sizes() {
    std::vector<Size> all;
    for (const std::size_t width : kWidths) {
        for (const std::size_t height : kHeights) {
            for (const std::size_t beside : kBesideTheCorner) {
                all.push_back({width + beside, width, height});
            }
        }
    }
    return all;
}

// Ends with the first failure: an access beyond the back edge would end the program before it is reported.
void expectPackedInAllSizes(const PixelKernels& kernels, PackCorner pack, Place place) {
    for (const Size& size : sizes()) {
        for (const Edge edge : {Edge::Front, Edge::Back}) {
            SCOPED_TRACE(std::to_string(size.width) + " x " + std::to_string(size.height) + " of rows of " +
                         std::to_string(size.stride));
            expectPacked(kernels, pack, size, place, edge);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

std::vector<const PixelKernels*> listOfKernels() {
    const AvailableKernels available = availableKernels();
    return {available.begin(), available.end()};
}

// What the processor has, as the test is told or as the kernel lists it.
std::string expectedKernels() {
    if (const char* told = std::getenv("VAULTPAD_TEST_KERNELS")) {
        return told;
    }
    std::ifstream file("/proc/cpuinfo");
    std::stringstream text;
    text << file.rdbuf() << ' ';
    const auto has = [all = text.str()](const std::string& flag) { return all.find(' ' + flag + ' ') != all.npos; };
    return std::string("plain") + (has("ssse3") ? " ssse3" : "") + (has("avx2") ? " avx2" : "") +
           (has("asimd") ? " neon" : "");
}

}  // namespace

TEST(AvailableKernels, AreThoseThatTheProcessorRuns) {
    std::string names;
    for (const PixelKernels* kernels : listOfKernels()) {
        names += (names.empty() ? "" : " ") + std::string(kernels->name);
    }
    std::cout << "Kernels tested on this processor: " << names << '\n';
    EXPECT_EQ(names, expectedKernels());
}

void PrintTo(const PixelKernels* kernels, std::ostream* out) {
    *out << kernels->name;
}

class EachKernel : public testing::TestWithParam<const PixelKernels*> {};

TEST_P(EachKernel, PacksEverySizeAndTouchesNothingElse) {
    expectPackedInAllSizes(*GetParam(), packCorner, upright);
}

TEST_P(EachKernel, PacksEverySizeTurnedClockwiseAndTouchesNothingElse) {
    expectPackedInAllSizes(*GetParam(), packCornerClockwise, clockwise);
}

TEST_P(EachKernel, PacksEverySizeTurnedCounterClockwiseAndTouchesNothingElse) {
    expectPackedInAllSizes(*GetParam(), packCornerCounterClockwise, counterClockwise);
}

TEST_P(EachKernel, TouchesNothingForAnEmptyCorner) {
    for (const Size& size : {Size{4, 0, 3}, Size{4, 4, 0}, Size{0, 0, 0}}) {
        for (const PackCorner pack :
             {PackCorner{packCorner}, PackCorner{packCornerClockwise}, PackCorner{packCornerCounterClockwise}}) {
            GuardedMemory nothing(0, Edge::Front);
            pack(*GetParam(), reinterpret_cast<const std::uint32_t*>(nothing.data()), size.stride, size.width,
                 size.height, nothing.data());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(, EachKernel, testing::ValuesIn(listOfKernels()),
                         [](const auto& tested) { return std::string(tested.param->name); });

}  // namespace vaultpad::communication
