// The display png in the real trusted application, pixel by pixel.
#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "display/bitmap.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

namespace fs = std::filesystem;

Bitmap readPng(const std::string& path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) {
        return {};
    }
    image.format = PNG_FORMAT_BGRA;
    Bitmap result({static_cast<int>(image.width), static_cast<int>(image.height)}, 0);
    png_image_finish_read(&image, nullptr, result.pixels.data(), 0, nullptr);
    return result;
}

constexpr std::uint32_t kGrey = 0xff828282;
constexpr std::uint32_t kShaded = 0xff404040;  // 0x82 under black of alpha 0x82: 130 * 125 / 255
constexpr std::uint32_t kWhite = 0xffffffff;
constexpr std::uint32_t kRed = 0xffff0000;
constexpr std::uint32_t kGreen = 0xff00ff00;
constexpr std::uint32_t kBlue = 0xff0000ff;

using Pixels = std::vector<std::uint32_t>;

const Pixels kOpening = {kShaded, kShaded, kGrey, kGrey, kGrey,  kGrey,  //
                         kGrey,   kGrey,   kGrey, kGrey, kGrey,  kGrey,  //
                         kRed,    kRed,    kGrey, kGrey, kGreen, kGreen};

TaClient::Setup pngSetup(const std::string& frames, std::vector<std::string> more = {}) {
    TaClient::Setup setup;
    setup.options = {"--display", "png", "--frames", frames};
    setup.options.insert(setup.options.end(), more.begin(), more.end());
    return setup;
}

TEST(PngDisplay, WritesOneExactPictureForEachChange) {
    const TemporaryFolder folder;
    const std::string frames = folder / "new/frames";
    TaClient client(pngSetup(frames));
    ASSERT_NO_FATAL_FAILURE(showPad(&client, tinyPad()));
    EXPECT_EQ(kOpening, readPng(frames + "/frame-0001.png").pixels);
    EXPECT_FALSE(fs::exists(frames + "/frame-0002.png"));

    press(&client, "r");
    Pixels expected = kOpening;
    std::copy_n(Pixels{kBlue, kBlue, kGrey, kGrey, kRed, kGrey}.begin(), 6, expected.begin() + 12);
    EXPECT_EQ(expected, readPng(frames + "/frame-0002.png").pixels);

    press(&client, "r");  // no key there: no picture
    press(&client, "!");
    expected[0] = kWhite;
    EXPECT_EQ(expected, readPng(frames + "/frame-0003.png").pixels);
    press(&client, "!!");  // the third dot does not fit: no picture
    expected[1] = kWhite;
    EXPECT_EQ(expected, readPng(frames + "/frame-0004.png").pixels);
    EXPECT_FALSE(fs::exists(frames + "/frame-0005.png"));
    EXPECT_EQ(4, std::distance(fs::directory_iterator(frames), fs::directory_iterator()));
}

TEST(PngDisplay, ShowsTheWholeScreenOnRequest) {
    const TemporaryFolder folder;
    TaClient client(pngSetup(folder / "f", {"--view", "screen"}));
    ASSERT_NO_FATAL_FAILURE(showPad(&client, tinyPad()));
    const Bitmap picture = readPng(folder / "f/frame-0001.png");
    ASSERT_EQ((Size{1920, 1080}), picture.size);
    EXPECT_EQ(kRed, picture.row(202)[100]);
    EXPECT_EQ(kGreen, picture.row(202)[105]);
    EXPECT_EQ(0xff101418u, picture.row(202)[106]);
    EXPECT_EQ(0xff101418u, picture.row(0)[0]);
}

TEST(PngDisplay, ShowsATurnedPadUpright) {
    for (const std::uint32_t orientation : {1u, 3u}) {
        const TemporaryFolder folder;
        std::vector<SampleImage> images = tinyPad();
        for (SampleImage& image : images) {
            const Rect upright = image.place;
            image.place = orientation == 1 ? Rect{3 - upright.bottom(), upright.x, upright.height, upright.width}
                                           : Rect{upright.y, 6 - upright.right(), upright.height, upright.width};
            if (orientation == 3) {
                // Rows of one pixel: the order turns round, and nothing else of them.
                Bytes turnedPixels;
                for (std::size_t i = image.pixels.size(); i > 0; i -= 3) {
                    turnedPixels.insert(turnedPixels.end(), image.pixels.begin() + static_cast<std::ptrdiff_t>(i) - 3,
                                        image.pixels.begin() + static_cast<std::ptrdiff_t>(i));
                }
                image.pixels = turnedPixels;
            }
        }
        TypeRequest type;
        type.orientation = orientation;
        TaClient client(pngSetup(folder / "f"));
        ASSERT_NO_FATAL_FAILURE(showPad(&client, images, type));
        press(&client, "r");
        const Bitmap picture = readPng(folder / "f/frame-0002.png");
        ASSERT_EQ((Size{6, 3}), picture.size) << orientation;
        Pixels expected = kOpening;
        std::copy_n(Pixels{kBlue, kBlue, kGrey, kGrey, kRed, kGrey}.begin(), 6, expected.begin() + 12);
        EXPECT_EQ(expected, picture.pixels) << orientation;
    }
}

TEST(PngDisplay, GoesOnBehindThePicturesOfAnEarlierSession) {
    const TemporaryFolder folder;
    for (int session = 0; session < 2; ++session) {
        TaClient client(pngSetup(folder / "f"));
        ASSERT_NO_FATAL_FAILURE(showPad(&client, tinyPad()));
    }
    EXPECT_EQ(kOpening, readPng(folder / "f/frame-0002.png").pixels);
}

TEST(PngDisplay, KeepsThePicturesToTheUserWhoRunsIt) {
    const TemporaryFolder folder;
    TaClient client(pngSetup(folder / "f"));
    ASSERT_NO_FATAL_FAILURE(showPad(&client, tinyPad()));
    EXPECT_EQ(fs::perms::owner_all, fs::status(folder / "f").permissions());
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write, fs::status(folder / "f/frame-0001.png").permissions());
}

TEST(PngDisplay, ShowsALoadingBarWhereThePadWillBe) {
    const TemporaryFolder folder;
    TaClient client(pngSetup(folder / "f"));
    ASSERT_EQ(0, client.open());
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR));
    EXPECT_EQ((Size{443, 486}), readPng(folder / "f/frame-0001.png").size);
    EXPECT_NE(readPng(folder / "f/frame-0001.png").pixels, readPng(folder / "f/frame-0002.png").pixels);
}

TEST(PngDisplay, RefusesTheSessionWhenItsFolderCannotBe) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    TaClient client(pngSetup(folder / "file/frames"));
    EXPECT_EQ(-1, client.open());
    EXPECT_EQ(1, client.waitForEnd());
    EXPECT_NE(std::string::npos, client.log().find("cannot create the folder")) << client.log();
}

TEST(PngDisplay, NeedsAFolder) {
    TaClient::Setup setup;
    setup.options = {"--display", "png"};
    setup.inChild = dropMessages;
    TaClient client(setup);
    EXPECT_EQ(TaClient::kEnded, client.open());
    EXPECT_NE(0, client.waitForEnd());
}

}  // namespace
}  // namespace vaultpad::secureworld
