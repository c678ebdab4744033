#include "picture.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

Picture readPng(const std::filesystem::path& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        throw std::runtime_error(path.string() + ": " + image.message);
    }
    image.format = PNG_FORMAT_BGRA;
    Picture picture{image.width, image.height, std::vector<std::uint32_t>(image.width * image.height)};
    if (png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr) == 0) {
        throw std::runtime_error(path.string() + ": " + image.message);
    }
    return picture;
}

void writePng(const std::filesystem::path& path, const Picture& picture) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_BGRA;
    if (png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr) == 0) {
        throw std::runtime_error(path.string() + ": " + image.message);
    }
}

std::size_t differingPixels(const Picture& a, const Picture& b, int tolerance) {
    if (a.width != b.width || a.height != b.height) {
        return std::max(a.pixels.size(), b.pixels.size());
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        for (unsigned int shift = 0; shift < 32; shift += 8) {
            const int difference =
                static_cast<int>(a.pixels[i] >> shift & 0xFF) - static_cast<int>(b.pixels[i] >> shift & 0xFF);
            if (std::abs(difference) > tolerance) {
                ++count;
                break;
            }
        }
    }
    return count;
}
