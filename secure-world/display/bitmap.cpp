#include "display/bitmap.h"

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

// Six bits to eight, so that 0 stays 0 and 63 becomes 255.
constexpr std::uint32_t widened(std::uint32_t value) {
    return (value & 0x3f) << 2 | (value & 0x3f) >> 4;
}

}  // namespace

Bitmap unpack(const std::uint8_t* packed, Size size, Turn turn) {
    Bitmap result(size, 0);
    for (std::uint32_t& pixel : result.pixels) {
        const std::uint32_t value =
            static_cast<std::uint32_t>(packed[0]) << 16 | static_cast<std::uint32_t>(packed[1]) << 8 | packed[2];
        pixel = widened(value >> 18) << 24 | widened(value >> 12) << 16 | widened(value >> 6) << 8 | widened(value);
        packed += VAULTPAD_TA_BYTES_PER_PIXEL;
    }
    result.pixels = turned(result.pixels, size, turn);
    result.size = turned(size, turn);
    return result;
}

}  // namespace vaultpad::secureworld
