// Pixels in memory, and the way from the packed format into them.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_BITMAP_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_BITMAP_H

#include <cstdint>
#include <vector>

#include "pad/geometry.h"
#include "pad/turn.h"

namespace vaultpad::secureworld {

// Premultiplied 0xAARRGGBB, row by row.
struct Bitmap {
    Size size;
    std::vector<std::uint32_t> pixels;

    Bitmap() = default;
    Bitmap(Size bitmapSize, std::uint32_t colour)
        : size(bitmapSize),
          pixels(static_cast<std::size_t>(bitmapSize.width) * static_cast<std::size_t>(bitmapSize.height), colour) {}

    std::uint32_t* row(int y) { return pixels.data() + static_cast<std::size_t>(y) * stride(); }
    const std::uint32_t* row(int y) const { return pixels.data() + static_cast<std::size_t>(y) * stride(); }
    std::size_t stride() const { return static_cast<std::size_t>(size.width); }
};

// Unpacks size.width * size.height pixels of VAULTPAD_TA_BYTES_PER_PIXEL bytes and turns the picture.
Bitmap unpack(const std::uint8_t* packed, Size size, Turn turn);

}  // namespace vaultpad::secureworld

#endif
