#include "png-file.h"

#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace vaultpad::tools {

namespace {

namespace fs = std::filesystem;
using secureworld::Bitmap;

constexpr std::size_t kChannels = 3;

std::uint32_t meanOf(const Bitmap& picture, int left, int top, int right, int bottom) {
    std::uint32_t red = 0;
    std::uint32_t green = 0;
    std::uint32_t blue = 0;
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const std::uint32_t pixel = picture.row(y)[x];
            red += pixel >> 16 & 0xff;
            green += pixel >> 8 & 0xff;
            blue += pixel & 0xff;
        }
    }
    const auto count = static_cast<std::uint32_t>((right - left) * (bottom - top));
    const auto mean = [count](std::uint32_t sum) { return (sum + count / 2) / count; };
    return 0xff000000u | mean(red) << 16 | mean(green) << 8 | mean(blue);
}

}  // namespace

void writePng(const fs::path& path, const Bitmap& picture) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(picture.pixels.size() * kChannels);
    for (const std::uint32_t pixel : picture.pixels) {
        bytes.push_back(static_cast<std::uint8_t>(pixel >> 16));
        bytes.push_back(static_cast<std::uint8_t>(pixel >> 8));
        bytes.push_back(static_cast<std::uint8_t>(pixel));
    }
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.size.width);
    image.height = static_cast<png_uint_32>(picture.size.height);
    image.format = PNG_FORMAT_RGB;
    const fs::path unfinished = path.string() + "." + std::to_string(getpid()) + ".new";
    std::error_code error;
    if (png_image_write_to_file(&image, unfinished.c_str(), 0, bytes.data(), 0, nullptr) == 0) {
        fs::remove(unfinished, error);
        throw std::runtime_error(path.string() + ": cannot be written: " + image.message);
    }
    fs::rename(unfinished, path, error);
    if (error) {
        std::error_code ignored;
        fs::remove(unfinished, ignored);
        throw std::runtime_error(path.string() + ": cannot be written: " + error.message());
    }
}

Bitmap reduced(const Bitmap& picture, int factor) {
    if (factor == 1) {
        return picture;
    }
    Bitmap result({(picture.size.width + factor - 1) / factor, (picture.size.height + factor - 1) / factor}, 0);
    for (int y = 0; y < result.size.height; ++y) {
        for (int x = 0; x < result.size.width; ++x) {
            result.row(y)[x] = meanOf(picture, x * factor, y * factor, std::min((x + 1) * factor, picture.size.width),
                                      std::min((y + 1) * factor, picture.size.height));
        }
    }
    return result;
}

}  // namespace vaultpad::tools
