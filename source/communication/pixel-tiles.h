/*
 * How a vector kernel walks an image: in blocks and tiles of a fixed size, the last of which overlaps the one before
 * where the image is no multiple of it. So nothing outside the image is read or written.
 *
 * Vector is a type in the including file's unnamed namespace with
 *   kBlock            pixels that pack() takes
 *   pack()            packs kBlock words that follow each other into exactly kBlock * 3 bytes
 *   kRows, kColumns   size of the tile that packTile() takes
 *   packTile()        packs such a tile of a Transposition, given where its source and its destination start; told that
 *                     there is Room::Beside it, it may also write two pixels to the right of each row
 * The unnamed namespace matters, and so does that these files use no function template or inline function of a library:
 * the linker could take one that was compiled for a better processor for the rest of the program.
 */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_PIXEL_TILES_H
#define VAULTPAD_SOURCE_COMMUNICATION_PIXEL_TILES_H

#include <vaultpad/ta-protocol.h>

#include "communication/pixel-kernels.h"

namespace vaultpad::communication {

/* What lies to the right of a tile in the destination: pixels that are packed later, or perhaps the next row. */
enum class Room { None, Beside };
constexpr std::ptrdiff_t kPixelsBeside = 2;

template <typename Vector>
void packRowInBlocks(const std::uint32_t* source, std::ptrdiff_t count, std::uint8_t* destination) {
    if (count < Vector::kBlock) {
        plainKernels->packRow(source, count, destination);
        return;
    }
    std::ptrdiff_t i = 0;
    for (; i + Vector::kBlock <= count; i += Vector::kBlock) {
        Vector::pack(source + i, destination + i * VAULTPAD_TA_BYTES_PER_PIXEL);
    }
    if (i < count) {
        i = count - Vector::kBlock;
        Vector::pack(source + i, destination + i * VAULTPAD_TA_BYTES_PER_PIXEL);
    }
}

/* The lines of a source are far apart, in a pattern that processors do not foresee. */
template <typename Vector>
void fetchTile(const std::uint32_t* source, std::ptrdiff_t sourceStep) {
    for (std::ptrdiff_t row = 0; row < Vector::kRows; ++row) {
        __builtin_prefetch(source + row * sourceStep);
        __builtin_prefetch(source + row * sourceStep + Vector::kColumns - 1);
    }
}

template <typename Vector>
void packStrip(const Transposition& image, std::ptrdiff_t column) {
    const std::ptrdiff_t lastRow = image.rows - Vector::kRows;
    for (std::ptrdiff_t row = 0; row < image.rows; row += Vector::kRows) {
        const std::ptrdiff_t first = row < lastRow ? row : lastRow;
        const std::uint32_t* source = image.source + first * image.sourceStep + column;
        if (first + Vector::kRows <= lastRow) {
            fetchTile<Vector>(source + Vector::kRows * image.sourceStep, image.sourceStep);
        }
        std::uint8_t* destination =
            image.destination + column * image.destinationStep + first * VAULTPAD_TA_BYTES_PER_PIXEL;
        if (first + kPixelsBeside <= lastRow) {
            Vector::template packTile<Room::Beside>(source, image.sourceStep, destination, image.destinationStep);
        } else {
            Vector::template packTile<Room::None>(source, image.sourceStep, destination, image.destinationStep);
        }
    }
}

template <typename Vector>
void packTransposedInTiles(const Transposition& image) {
    if (image.rows < Vector::kRows || image.columns < Vector::kColumns) {
        plainKernels->packTransposed(image);
        return;
    }
    const std::ptrdiff_t lastColumn = image.columns - Vector::kColumns;
    for (std::ptrdiff_t column = 0; column < image.columns; column += Vector::kColumns) {
        packStrip<Vector>(image, column < lastColumn ? column : lastColumn);
    }
}

}  // namespace vaultpad::communication

#endif
