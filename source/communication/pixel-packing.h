/*
 * The pixel kernels: packing into the trusted application's format, upright or with a quarter turn.
 *
 * A packed pixel has 3 bytes: 6 bits each of alpha, red, green and blue, most significant first. Source pixels are
 * 32-bit words 0xAARRGGBB. All functions pack the top-left width x height corner of an image whose rows are stride
 * words long into width * height * 3 bytes. They touch no other byte, and call nothing but each other.
 */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_PIXEL_PACKING_H
#define VAULTPAD_SOURCE_COMMUNICATION_PIXEL_PACKING_H

#include <cstddef>
#include <cstdint>

namespace vaultpad::communication {

/* Packs the corner as it stands: height rows of width pixels. */
void packCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint8_t* destination);

/*
 * Pack the corner turned by 90 degrees, into width rows of height pixels. Clockwise takes (row i, column j) to (row j,
 * column height - 1 - i); counter-clockwise takes it to (row width - 1 - j, column i).
 */
void packCornerClockwise(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                         std::uint8_t* destination);
void packCornerCounterClockwise(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                                std::uint8_t* destination);

}  // namespace vaultpad::communication

#endif
