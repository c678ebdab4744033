// A known picture goes in as a layout, and comes out in the trusted application's store.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "client.h"
#include "picture.h"
#include "television.h"

namespace {

constexpr std::size_t kWidth = 7;
constexpr std::size_t kHeight = 5;
constexpr int kX = 31;
constexpr int kY = 43;

// Every pixel its own colour; opaque, so that no premultiplication rounds it.
Picture knownPicture() {
    Picture picture{kWidth, kHeight, {}};
    for (std::size_t y = 0; y < kHeight; ++y) {
        for (std::size_t x = 0; x < kWidth; ++x) {
            picture.pixels.push_back(
                static_cast<std::uint32_t>(0xFF000000u | (x * 36) << 16 | (y * 60) << 8 | (255 - x * y * 8)));
        }
    }
    return picture;
}

void writeLayout(const std::filesystem::path& root, const std::string& directory, const std::string& stem) {
    const std::filesystem::path folder = root / "vaultpad/res/xml" / directory;
    std::filesystem::create_directories(folder);
    std::filesystem::create_directories(root / "images");
    writePng(root / "images/known.png", knownPicture());
    std::ofstream(folder / (stem + ".xml"))
        << "<layout><images basedir=\"" << (root / "images").string() << "\">"
        << "<image id=\"known\" type=\"file\" url=\"known.png\"/></images><objects>"
        << "<object type=\"image\" id=\"background\" ref=\"known\" x=\"" << kX << "\" y=\"" << kY << "\"/>"
        << "</objects></layout>";
}

struct StoredImage {
    std::string name;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::size_t bytes = 0;
    std::vector<unsigned char> pixels;
};

StoredImage readStore(const std::filesystem::path& store) {
    std::ifstream index(store / "index.tsv");
    StoredImage image;
    std::string number;
    std::string line;
    while (std::getline(index, line)) {
        std::istringstream fields(line);
        StoredImage candidate;
        if (fields >> number >> candidate.name >> candidate.x >> candidate.y >> candidate.width >> candidate.height >>
            candidate.bytes) {
            image = candidate;
        }
    }
    std::ifstream file(store / (number + ".bin"), std::ios::binary);
    image.pixels.assign(std::istreambuf_iterator<char>(file), {});
    return image;
}

// The format in its plainest words: 24 bits, alpha first, 6 bits each.
void appendPacked(std::uint32_t argb, std::vector<unsigned char>& bytes) {
    unsigned int value = 0;
    for (int shift = 24; shift >= 0; shift -= 8) {
        value = value * 64 + (argb >> shift & 0xFF) / 4;
    }
    bytes.insert(bytes.end(), {static_cast<unsigned char>(value / 65536), static_cast<unsigned char>(value / 256 % 256),
                               static_cast<unsigned char>(value % 256)});
}

struct Turned {
    const char* rotator;
    const char* directory;
    const char* stem;
    int x;
    int y;
    bool swapped;
    /* Which source pixel stands at (column, row) of the received image. */
    std::uint32_t (*source)(const Picture&, std::size_t column, std::size_t row);
};

const Turned kOrientations[] = {
    {"none", "normal", "pinpad", kX, kY, false,
     [](const Picture& p, std::size_t column, std::size_t row) { return p.at(column, row); }},
    // Turned clockwise: the viewer's top edge is the panel's right edge; 486 is the pad's height.
    {"portrait", "vertical_normal", "vertical-pinpad", 486 - (kY + static_cast<int>(kHeight)), kX, true,
     [](const Picture& p, std::size_t column, std::size_t row) { return p.at(row, kHeight - 1 - column); }},
    // Turned counter-clockwise: the viewer's top edge is the panel's left edge; 443 is the pad's width.
    {"portrait-reversed", "vertical_normal", "vertical-pinpad", kY, 443 - (kX + static_cast<int>(kWidth)), true,
     [](const Picture& p, std::size_t column, std::size_t row) { return p.at(kWidth - 1 - row, column); }},
};

class ImageTransfer : public testing::TestWithParam<Turned> {};

TEST_P(ImageTransfer, KnownPictureArrivesWithItsBytesNamePlaceAndSize) {
    const Turned& turned = GetParam();
    Television television;
    const std::filesystem::path root = television.folder() / "root";
    writeLayout(root, turned.directory, turned.stem);
    television.set("paths", "application-root", root.string())
        .set("orientation", "rotator", turned.rotator)
        .set("secure-world", "store", television.store().string())
        .apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD)) << television.log();

    const StoredImage image = readStore(television.store());
    const std::size_t width = turned.swapped ? kHeight : kWidth;
    const std::size_t height = turned.swapped ? kWidth : kHeight;
    EXPECT_EQ("/root/background.ppm", image.name);
    EXPECT_EQ(turned.x, image.x);
    EXPECT_EQ(turned.y, image.y);
    EXPECT_EQ(static_cast<int>(width), image.width);
    EXPECT_EQ(static_cast<int>(height), image.height);
    const Picture picture = knownPicture();
    std::vector<unsigned char> expected;
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            appendPacked(turned.source(picture, column, row), expected);
        }
    }
    EXPECT_EQ(expected.size(), image.bytes);
    EXPECT_EQ(expected, image.pixels);
}

std::string orientationName(const testing::TestParamInfo<Turned>& info) {
    const std::string names[] = {"Landscape", "Portrait", "PortraitReversed"};
    return names[info.index];
}

INSTANTIATE_TEST_SUITE_P(Orientations, ImageTransfer, testing::ValuesIn(kOrientations), orientationName);

}  // namespace
