// The reference, for any processor.
#include <vaultpad/ta-protocol.h>

#include "communication/pixel-kernels.h"

namespace vaultpad::communication {

namespace {

void packPixel(std::uint32_t argb, std::uint8_t* packed) {
    const std::uint32_t alpha = argb >> 26 & 0x3Fu;
    const std::uint32_t red = argb >> 18 & 0x3Fu;
    const std::uint32_t green = argb >> 10 & 0x3Fu;
    const std::uint32_t blue = argb >> 2 & 0x3Fu;
    const std::uint32_t value = alpha << 18 | red << 12 | green << 6 | blue;
    packed[0] = static_cast<std::uint8_t>(value >> 16);
    packed[1] = static_cast<std::uint8_t>(value >> 8);
    packed[2] = static_cast<std::uint8_t>(value);
}

void packRow(const std::uint32_t* source, std::ptrdiff_t count, std::uint8_t* destination) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        packPixel(source[i], destination + i * VAULTPAD_TA_BYTES_PER_PIXEL);
    }
}

void packTransposed(const Transposition& image) {
    for (std::ptrdiff_t column = 0; column < image.columns; ++column) {
        std::uint8_t* packed = image.destination + column * image.destinationStep;
        for (std::ptrdiff_t row = 0; row < image.rows; ++row) {
            packPixel(image.source[row * image.sourceStep + column], packed + row * VAULTPAD_TA_BYTES_PER_PIXEL);
        }
    }
}

constexpr PixelKernels kKernels{"plain", packRow, packTransposed};

}  // namespace

const PixelKernels* const plainKernels = &kKernels;

}  // namespace vaultpad::communication
