#include "picture-comparison.h"

#include <png.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace vaultpad::test {

namespace {

constexpr int kComponents = 4;
constexpr std::uint32_t kOpaque = 255;
constexpr std::uint32_t kDiffers = 0xFFFF0000;

std::size_t offset(const Picture& picture, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x);
}

// Component 0 is blue, 1 green, 2 red, 3 alpha.
std::uint32_t component(std::uint32_t pixel, int index) {
    return (pixel >> (8 * index)) & 0xFF;
}

// Rounding both ways makes premultiplied(straight(p)) == p.
std::uint32_t straight(std::uint32_t value, std::uint32_t alpha) {
    return alpha == 0 ? 0 : std::min(kOpaque, (value * kOpaque + alpha / 2) / alpha);
}

std::uint32_t premultiplied(std::uint32_t value, std::uint32_t alpha) {
    return (value * alpha + kOpaque / 2) / kOpaque;
}

int largestDifference(std::uint32_t a, std::uint32_t b) {
    int largest = 0;
    for (int i = 0; i < kComponents; ++i) {
        largest = std::max(largest, std::abs(static_cast<int>(component(a, i)) - static_cast<int>(component(b, i))));
    }
    return largest;
}

std::uint32_t pale(std::uint32_t pixel) {
    constexpr std::uint32_t kWhite = 255;
    const std::uint32_t grey = (component(pixel, 0) + component(pixel, 1) + component(pixel, 2)) / 3;
    const std::uint32_t light = kWhite - kWhite / 4 + grey / 4;
    return 0xFF000000 | light << 16 | light << 8 | light;
}

void requirePng(const png_image& image, bool done, const std::string& path) {
    if (!done || PNG_IMAGE_FAILED(image)) {
        throw std::runtime_error(path + ": " + image.message);
    }
}

png_image makePngImage() {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    return image;
}

// Leaves the file for the reader of the test's message, and says so or why not.
std::string leave(const Picture& picture, const std::string& path) {
    try {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        writePng(picture, path);
        return path;
    } catch (const std::exception& error) {
        return std::string("not written, ") + error.what();
    }
}

bool updatesReferences() {
    const char* value = std::getenv("VAULTPAD_UPDATE_REFERENCES");
    return value != nullptr && std::string(value) == "1";
}

}  // namespace

Picture::Picture(int width_, int height_, std::uint32_t colour)
    : width(width_),
      height(height_),
      pixels(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_), colour) {}

std::uint32_t Picture::pixel(int x, int y) const {
    return pixels.at(offset(*this, x, y));
}

void Picture::pixel(int x, int y, std::uint32_t colour) {
    pixels.at(offset(*this, x, y)) = colour;
}

void Picture::fill(int left, int top, int rectangleWidth, int rectangleHeight, std::uint32_t colour) {
    for (int y = top; y < top + rectangleHeight; ++y) {
        for (int x = left; x < left + rectangleWidth; ++x) {
            pixel(x, y, colour);
        }
    }
}

Picture cutOut(const unsigned int* buffer, int bufferWidth, int width, int height) {
    Picture picture(width, height);
    for (int y = 0; y < height; ++y) {
        std::copy_n(buffer + static_cast<std::ptrdiff_t>(y) * bufferWidth, width,
                    picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * width);
    }
    return picture;
}

Picture readPng(const std::string& path) {
    png_image image = makePngImage();
    requirePng(image, png_image_begin_read_from_file(&image, path.c_str()) != 0, path);
    image.format = PNG_FORMAT_RGBA;
    std::vector<png_byte> bytes(PNG_IMAGE_SIZE(image));
    requirePng(image, png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) != 0, path);

    Picture picture(static_cast<int>(image.width), static_cast<int>(image.height));
    const png_byte* rgba = bytes.data();
    for (std::uint32_t& pixel : picture.pixels) {
        const std::uint32_t alpha = rgba[3];
        pixel = alpha << 24 | premultiplied(rgba[0], alpha) << 16 | premultiplied(rgba[1], alpha) << 8 |
                premultiplied(rgba[2], alpha);
        rgba += kComponents;
    }
    return picture;
}

void writePng(const Picture& picture, const std::string& path) {
    std::vector<png_byte> bytes;
    bytes.reserve(picture.pixels.size() * kComponents);
    for (const std::uint32_t pixel : picture.pixels) {
        const std::uint32_t alpha = component(pixel, 3);
        for (const int colour : {2, 1, 0}) {
            bytes.push_back(static_cast<png_byte>(straight(component(pixel, colour), alpha)));
        }
        bytes.push_back(static_cast<png_byte>(alpha));
    }
    png_image image = makePngImage();
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGBA;
    requirePng(image, png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr) != 0, path);
}

Difference differenceBetween(const Picture& picture, const Picture& reference, int component) {
    Difference result;
    if (picture.width != reference.width || picture.height != reference.height) {
        result.sameSize = false;
        return result;
    }
    result.image = Picture(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            const int amount = largestDifference(picture.pixel(x, y), reference.pixel(x, y));
            result.largest = std::max(result.largest, amount);
            if (amount <= component) {
                result.image.pixel(x, y, pale(reference.pixel(x, y)));
                continue;
            }
            if (result.pixels++ == 0) {
                result.firstX = x;
                result.firstY = y;
            }
            result.image.pixel(x, y, kDiffers);
        }
    }
    return result;
}

testing::AssertionResult matchesReference(const Picture& picture, const std::string& referencePath,
                                          const std::string& outputFolder, Tolerance tolerance) {
    if (updatesReferences()) {
        writePng(picture, referencePath);
        return testing::AssertionSuccess() << referencePath << " written";
    }
    const std::string stem = outputFolder + "/" + std::filesystem::path(referencePath).stem().string();
    if (!std::filesystem::exists(referencePath)) {
        return testing::AssertionFailure()
               << referencePath << " does not exist; look at the picture (" << leave(picture, stem + ".actual.png")
               << ") and make it the reference with VAULTPAD_UPDATE_REFERENCES=1";
    }
    const Picture reference = readPng(referencePath);
    const Difference difference = differenceBetween(picture, reference, tolerance.component);
    if (!difference.sameSize) {
        return testing::AssertionFailure() << "the picture is " << picture.width << "x" << picture.height << ", "
                                           << referencePath << " is " << reference.width << "x" << reference.height
                                           << "; the picture: " << leave(picture, stem + ".actual.png");
    }
    if (difference.pixels <= tolerance.pixels) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << difference.pixels << " pixels differ by more than " << tolerance.component
                                       << " from " << referencePath << " (" << tolerance.pixels
                                       << " may), the first at " << difference.firstX << "," << difference.firstY
                                       << ", the largest difference is " << difference.largest
                                       << "; the picture: " << leave(picture, stem + ".actual.png")
                                       << "; the difference: " << leave(difference.image, stem + ".difference.png");
}

}  // namespace vaultpad::test
