// Display png: one file for each change of the picture.
#include <png.h>
#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include "display/display-module.h"

namespace vaultpad::secureworld {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChannels = 3;
// A row of pictures tells what was typed by where the focus was: nobody but the user may read it.
constexpr mode_t kPrivate = 0077;

class PngDisplay : public Display {
public:
    explicit PngDisplay(const DisplaySettings& settings) : folder_(settings.framesFolder) {
        umask(kPrivate);
        std::error_code error;
        fs::create_directories(folder_, error);
        if (error) {
            throw std::runtime_error("cannot create the folder " + folder_.string() + ": " + error.message());
        }
        // Pictures of an earlier session stay: the numbers go on behind them.
        while (fs::exists(pathOf(number_ + 1), error)) {
            ++number_;
        }
        write(temporary(), std::vector<std::uint8_t>(kChannels, 0), 1, 1);  // tells now whether it can be written to
        fs::remove(temporary(), error);
    }

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
        write(temporary(), bytes, picture.width, picture.height);
        // Whoever watches the folder finds whole pictures only.
        fs::rename(temporary(), pathOf(number_ + 1));
        ++number_;
    }

private:
    fs::path temporary() const { return folder_ / ".frame.png.new"; }

    fs::path pathOf(unsigned number) const {
        char name[32];
        std::snprintf(name, sizeof(name), "frame-%04u.png", number);
        return folder_ / name;
    }

    static void write(const fs::path& path, const std::vector<std::uint8_t>& bytes, int width, int height) {
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

    fs::path folder_;
    unsigned number_ = 0;  // of the latest picture
};

}  // namespace
}  // namespace vaultpad::secureworld

VAULTPAD_DISPLAY_MODULE(vaultpad::secureworld::PngDisplay)
