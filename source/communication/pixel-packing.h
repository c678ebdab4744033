/*
 * The pixel kernels: packing into the trusted application's format, and quarter turns.
 *
 * A packed pixel has 3 bytes: 6 bits each of alpha, red, green and blue, most significant first. Source pixels are
 * 32-bit words 0xAARRGGBB. Widths and heights are pixels, and are not negative.
 */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_PIXEL_PACKING_H
#define VAULTPAD_SOURCE_COMMUNICATION_PIXEL_PACKING_H

#include <cstddef>
#include <cstdint>

namespace vaultpad::communication {

/* Copies the top-left width x height corner of an image whose rows are stride words long. */
void copyCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint32_t* destination);

/* Packs that corner into width * height * 3 bytes. */
void packCorner(const std::uint32_t* source, std::size_t stride, std::size_t width, std::size_t height,
                std::uint8_t* destination);

/*
 * Turn an image of height rows of width words by 90 degrees into width rows of height words. Clockwise takes (row i,
 * column j) to (row j, column height - 1 - i); counter-clockwise takes it to (row width - 1 - j, column i).
 */
void turnClockwise(const std::uint32_t* source, std::size_t width, std::size_t height, std::uint32_t* destination);
void turnCounterClockwise(const std::uint32_t* source, std::size_t width, std::size_t height,
                          std::uint32_t* destination);

}  // namespace vaultpad::communication

#endif
