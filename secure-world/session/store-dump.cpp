#include "session/store-dump.h"

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

#include "session/text.h"

namespace vaultpad::secureworld {

namespace {

namespace fs = std::filesystem;

void write(const fs::path& path, const char* data, std::size_t size) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(data, static_cast<std::streamsize>(size));
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write " + path.string() + ": check the folder given with --store");
    }
}

std::string numberOf(std::size_t index) {
    char text[32];
    std::snprintf(text, sizeof(text), "%03zu", index + 1);
    return text;
}

}  // namespace

void dumpStore(const ImageStore& store, const std::string& folder) {
    const fs::path root(folder);
    std::error_code error;
    fs::create_directories(root, error);
    if (error) {
        throw std::runtime_error("cannot create " + folder + ": " + error.message());
    }
    std::ostringstream index;
    for (std::size_t i = 0; i < store.images().size(); ++i) {
        const StoredImage& image = store.images()[i];
        const std::string number = numberOf(i);
        write(root / (number + ".bin"), reinterpret_cast<const char*>(image.pixels.begin()), image.pixels.size);
        index << number << '\t' << escaped(image.name) << '\t' << image.x << '\t' << image.y << '\t'
              << image.panelPlace.width << '\t' << image.panelPlace.height << '\t' << image.pixels.size << '\n';
    }
    const fs::path temporary = root / ".index.tsv.new";
    const std::string text = index.str();
    write(temporary, text.data(), text.size());
    fs::rename(temporary, root / "index.tsv", error);
    if (error) {
        throw std::runtime_error("cannot write " + (root / "index.tsv").string() + ": " + error.message());
    }
}

}  // namespace vaultpad::secureworld
