/* Pictures in memory, as PNG files, and their comparison with a reference. */
#ifndef VAULTPAD_UNIT_DRAWING_PICTURE_COMPARISON_H
#define VAULTPAD_UNIT_DRAWING_PICTURE_COMPARISON_H

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vaultpad::test {

/* Row-major pixels 0xAARRGGBB with premultiplied alpha, as the renderer delivers them. */
struct Picture {
    Picture() = default;
    Picture(int width, int height, std::uint32_t colour = 0);

    std::uint32_t pixel(int x, int y) const;
    void pixel(int x, int y, std::uint32_t colour);
    void fill(int left, int top, int rectangleWidth, int rectangleHeight, std::uint32_t colour);

    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

/* Copies the top-left width x height pixels of a buffer with bufferWidth words per row. */
Picture cutOut(const unsigned int* buffer, int bufferWidth, int width, int height);

/*
 * PNG files keep straight alpha; writing and reading a picture returns it unchanged, unless a colour component of it
 * exceeds its alpha. Both throw std::runtime_error that names the file and the reason.
 */
Picture readPng(const std::string& path);
void writePng(const Picture& picture, const std::string& path);

/*
 * How far a picture may be from its reference: a component may differ by up to `component` (0 to 255) everywhere, and
 * by any amount in up to `pixels` pixels.
 */
struct Tolerance {
    int component = 0;
    std::size_t pixels = 0;
};

struct Difference {
    bool sameSize = true;
    std::size_t pixels = 0; /* that differ by more than the tolerance's component */
    int largest = 0;        /* difference of a component, of all pixels */
    int firstX = 0;         /* the first of those pixels, meaningful when there is one */
    int firstY = 0;
    Picture image; /* those pixels red, the others as the reference has them, pale */
};

/* Pictures of unequal size have no image and no counts. */
Difference differenceBetween(const Picture& picture, const Picture& reference, int component);

/*
 * Succeeds when the picture is within the tolerance of the PNG file `referencePath`. Else the picture and the
 * difference are left in `outputFolder` as NAME.actual.png and NAME.difference.png, and the message says where.
 * With VAULTPAD_UPDATE_REFERENCES=1 in the environment the reference is written instead, and the comparison succeeds.
 */
testing::AssertionResult matchesReference(const Picture& picture, const std::string& referencePath,
                                          const std::string& outputFolder, Tolerance tolerance);

}  // namespace vaultpad::test

#endif
