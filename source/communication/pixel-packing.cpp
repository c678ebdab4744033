#include "communication/pixel-packing.h"

#include <vaultpad/ta-protocol.h>

#include <algorithm>

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

}  // namespace

void copyCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint32_t* destination) {
    for (std::size_t row = 0; row < height; ++row) {
        std::copy_n(source + row * stride, width, destination + row * width);
    }
}

void packCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint8_t* destination) {
    for (std::size_t row = 0; row < height; ++row) {
        const std::uint32_t* pixels = source + row * stride;
        for (std::size_t column = 0; column < width; ++column) {
            packPixel(pixels[column], destination);
            destination += VAULTPAD_TA_BYTES_PER_PIXEL;
        }
    }
}

void turnClockwise(const std::uint32_t* source, std::size_t width, std::size_t height, std::uint32_t* destination) {
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            destination[column * height + (height - 1 - row)] = source[row * width + column];
        }
    }
}

void turnCounterClockwise(const std::uint32_t* source, std::size_t width, std::size_t height,
                          std::uint32_t* destination) {
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            destination[(width - 1 - column) * height + row] = source[row * width + column];
        }
    }
}

}  // namespace vaultpad::communication
