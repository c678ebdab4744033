/* PNG files, in and out. */
#ifndef VAULTPAD_TESTS_INTEGRATION_PICTURE_H
#define VAULTPAD_TESTS_INTEGRATION_PICTURE_H

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

/* Straight (not premultiplied) alpha; one word 0xAARRGGBB per pixel, row by row. */
struct Picture {
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<std::uint32_t> pixels;

    std::uint32_t at(std::size_t x, std::size_t y) const { return pixels[y * width + x]; }
};

/* Both throw std::runtime_error with the file's name. */
Picture readPng(const std::filesystem::path& path);
void writePng(const std::filesystem::path& path, const Picture& picture);

/* How many pixels differ in any channel by more than tolerance; every pixel when the sizes differ. */
std::size_t differingPixels(const Picture& a, const Picture& b, int tolerance);

#endif
