/*
 * The loops below pixel-packing.h, once per instruction set; the best that the processor runs is chosen at run time.
 *
 * The plain loop is the reference: every other kernel gives the same bytes, and leaves images too small for it to it.
 */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_PIXEL_KERNELS_H
#define VAULTPAD_SOURCE_COMMUNICATION_PIXEL_KERNELS_H

#include <cstddef>
#include <cstdint>

namespace vaultpad::communication {

/*
 * An image and where it goes when rows become columns: word (row, column) of the source, at source + row * sourceStep +
 * column, becomes the packed pixel at destination + column * destinationStep + row * 3. A step may be negative, which
 * makes a quarter turn of the transposition: steps count words in the source and bytes in the destination.
 */
struct Transposition {
    const std::uint32_t* source;
    std::ptrdiff_t sourceStep;
    std::ptrdiff_t rows;
    std::ptrdiff_t columns;
    std::uint8_t* destination;
    std::ptrdiff_t destinationStep;
};

struct PixelKernels {
    const char* name;
    /* Packs count words that follow each other. */
    void (*packRow)(const std::uint32_t* source, std::ptrdiff_t count, std::uint8_t* destination);
    void (*packTransposed)(const Transposition& image);
};

/* One per instruction set; null where the compiler was not told to use it. */
extern const PixelKernels* const plainKernels;
extern const PixelKernels* const ssse3Kernels;
extern const PixelKernels* const avx2Kernels;
extern const PixelKernels* const neonKernels;

/* What this build has for this processor, slowest first; the plain loop is always there. */
struct AvailableKernels {
    const PixelKernels* list[4];
    std::size_t count;

    const PixelKernels* const* begin() const { return list; }
    const PixelKernels* const* end() const { return list + count; }
    const PixelKernels& best() const { return *list[count - 1]; }
};

AvailableKernels availableKernels();

/* The functions of pixel-packing.h with kernels of the caller's choice. */
void packCorner(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride, std::size_t width,
                std::size_t height, std::uint8_t* destination);
void packCornerClockwise(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride,
                         std::size_t width, std::size_t height, std::uint8_t* destination);
void packCornerCounterClockwise(const PixelKernels& kernels, const std::uint32_t* source, std::size_t stride,
                                std::size_t width, std::size_t height, std::uint8_t* destination);

}  // namespace vaultpad::communication

#endif
