// Packing of a rendered image beside memcpy() of its source.
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "communication/pixel-packing.h"
#include "comparison.h"

namespace {

using vaultpad::bench::compare;
using vaultpad::bench::Comparison;

// The size of the PIN pad's background, the largest image of that pad.
constexpr std::size_t kWidth = 443;
constexpr std::size_t kHeight = 486;
constexpr std::size_t kPixels = kWidth * kHeight;

std::vector<std::uint32_t> randomPixels() {
    std::mt19937 generator(20240607);
    std::vector<std::uint32_t> pixels(kPixels);
    for (std::uint32_t& pixel : pixels) {
        pixel = static_cast<std::uint32_t>(generator());
    }
    return pixels;
}

const std::vector<std::uint32_t> source = randomPixels();
std::vector<std::uint32_t> copy(kPixels);
std::vector<std::uint8_t> packed(kPixels * 3);

bool registerAll() {
    const auto yardstick = [] {
        std::memcpy(copy.data(), source.data(), kPixels * sizeof(std::uint32_t));
        benchmark::DoNotOptimize(copy.data());
    };
    Comparison comparison;
    comparison.name = "pack";
    comparison.yardstick = "memcpy of the image";
    comparison.item = "pixel";
    comparison.items = kPixels;
    compare(
        comparison,
        [] {
            vaultpad::communication::packCorner(source.data(), kWidth, kWidth, kHeight, packed.data());
            benchmark::DoNotOptimize(packed.data());
        },
        yardstick);
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
