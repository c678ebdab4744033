// Packing of a rendered image, upright and turned, beside memcpy() of its source.
#include <cstdint>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "communication/pixel-kernels.h"
#include "comparison.h"

namespace {

using vaultpad::bench::compare;
using vaultpad::bench::Comparison;
using vaultpad::communication::PixelKernels;

// The largest image of the PIN pad: its background.
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

void copyImage() {
    std::memcpy(copy.data(), source.data(), kPixels * sizeof(std::uint32_t));
    benchmark::DoNotOptimize(copy.data());
}

using PackCorner = void (*)(const PixelKernels&, const std::uint32_t*, std::size_t, std::size_t, std::size_t,
                            std::uint8_t*);

void comparePacking(const std::string& name, PackCorner pack, const PixelKernels& kernels, double ratioAtLeast) {
    Comparison comparison;
    comparison.name = name + "/" + kernels.name;
    comparison.yardstick = "memcpy of the image";
    comparison.ratioAtLeast = ratioAtLeast;
    comparison.item = "pixel";
    comparison.items = kPixels;
    compare(
        comparison, [=, &kernels] { pack(kernels, source.data(), kWidth, kWidth, kHeight, packed.data()); }, copyImage);
}

struct Gates {
    std::string kernels;
    double upright;
    double turned;
};

// Well below what is measured on a quiet machine, for one that is not. Kernels without gates are shown for comparison.
const Gates gates[] = {{"ssse3", 0.45, 0.20}, {"avx2", 0.75, 0.28}};

Gates gatesOf(const PixelKernels& kernels) {
    for (const Gates& candidate : gates) {
        if (candidate.kernels == kernels.name) {
            return candidate;
        }
    }
    return {kernels.name, 0, 0};
}

bool registerAll() {
    for (const PixelKernels* kernels : vaultpad::communication::availableKernels()) {
        const Gates bounds = gatesOf(*kernels);
        comparePacking("upright", vaultpad::communication::packCorner, *kernels, bounds.upright);
        comparePacking("clockwise", vaultpad::communication::packCornerClockwise, *kernels, bounds.turned);
        comparePacking("counter-clockwise", vaultpad::communication::packCornerCounterClockwise, *kernels,
                       bounds.turned);
    }
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
