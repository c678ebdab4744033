// Display png: one file for each change of the picture.
#include <png.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "display/display-module.h"
#include "numbered-files.h"

namespace vaultpad::secureworld {
namespace {

constexpr std::size_t kChannels = 3;

class PngDisplay : public Display {
public:
    explicit PngDisplay(const DisplaySettings& settings) : files_(settings.framesFolder, "frame") {}

    void show(const Picture& picture) override {
        std::vector<std::uint8_t> bytes;
        bytes.reserve(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) * kChannels);
        for (int y = 0; y < picture.height; ++y) {
            const std::uint32_t* row = picture.pixels + static_cast<std::size_t>(y) * picture.stride;
            for (int x = 0; x < picture.width; ++x) {
                bytes.push_back(static_cast<std::uint8_t>(row[x] >> 16 & 0xff));
                bytes.push_back(static_cast<std::uint8_t>(row[x] >> 8 & 0xff));
                bytes.push_back(static_cast<std::uint8_t>(row[x] & 0xff));
            }
        }
        write(files_.unfinished(), bytes, picture.width, picture.height);
        files_.publish(".png");
    }

private:
    static void write(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes, int width,
                      int height) {
        png_image image = {};
        image.version = PNG_IMAGE_VERSION;
        image.width = static_cast<png_uint_32>(width);
        image.height = static_cast<png_uint_32>(height);
        image.format = PNG_FORMAT_RGB;
        image.flags = PNG_IMAGE_FLAG_FAST;
        if (png_image_write_to_file(&image, path.c_str(), 0, bytes.data(), 0, nullptr) == 0) {
            throw std::runtime_error("cannot write " + path.string() + ": " + image.message);
        }
    }

    NumberedFiles files_;
};

}  // namespace
}  // namespace vaultpad::secureworld

VAULTPAD_DISPLAY_MODULE(vaultpad::secureworld::PngDisplay)
