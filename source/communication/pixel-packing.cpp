#include "communication/pixel-packing.h"

#include <vaultpad/ta-protocol.h>

#include "communication/pixel-kernels.h"

namespace vaultpad::communication {

namespace {

constexpr std::size_t kPacked = VAULTPAD_TA_BYTES_PER_PIXEL;

const PixelKernels& chosenKernels() {
    static const PixelKernels& kernels = availableKernels().best();
    return kernels;
}

}  // namespace

AvailableKernels availableKernels() {
    AvailableKernels available{{plainKernels}, 1};
    const auto add = [&available](const PixelKernels* kernels, bool runs) {
        if (kernels != nullptr && runs) {
            available.list[available.count++] = kernels;
        }
    };
#if defined(__x86_64__) || defined(__i386__)
    add(ssse3Kernels, __builtin_cpu_supports("ssse3"));
    add(avx2Kernels, __builtin_cpu_supports("avx2"));
#endif
    // Built only where every processor has it.
    add(neonKernels, true);
    return available;
}

void packCorner(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride, std::size_t width,
                std::size_t height, std::uint8_t* destination) {
    if (stride == width) {
        kernels.packRow(source, static_cast<std::ptrdiff_t>(width * height), destination);
        return;
    }
    for (std::size_t row = 0; row < height; ++row) {
        kernels.packRow(source + row * stride, static_cast<std::ptrdiff_t>(width), destination + row * width * kPacked);
    }
}

// A turned row starts with the last row of the source.
void packCornerClockwise(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride,
                         std::size_t width, std::size_t height, std::uint8_t* destination) {
    if (width == 0 || height == 0) {
        return;
    }
    kernels.packTransposed({source + (height - 1) * stride, -static_cast<std::ptrdiff_t>(stride),
                            static_cast<std::ptrdiff_t>(height), static_cast<std::ptrdiff_t>(width), destination,
                            static_cast<std::ptrdiff_t>(height * kPacked)});
}

// The first column of the source becomes the last turned row.
void packCornerCounterClockwise(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride,
                                std::size_t width, std::size_t height, std::uint8_t* destination) {
    if (width == 0 || height == 0) {
        return;
    }
    kernels.packTransposed({source, static_cast<std::ptrdiff_t>(stride), static_cast<std::ptrdiff_t>(height),
                            static_cast<std::ptrdiff_t>(width), destination + (width - 1) * height * kPacked,
                            -static_cast<std::ptrdiff_t>(height * kPacked)});
}

void packCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint8_t* destination) {
    packCorner(chosenKernels(), source, stride, width, height, destination);
}

void packCornerClockwise(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                         std::uint8_t* destination) {
    packCornerClockwise(chosenKernels(), source, stride, width, height, destination);
}

void packCornerCounterClockwise(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                                std::uint8_t* destination) {
    packCornerCounterClockwise(chosenKernels(), source, stride, width, height, destination);
}

}  // namespace vaultpad::communication
