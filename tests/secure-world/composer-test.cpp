#include "display/composer.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "display/bitmap.h"
#include "display/screen.h"
#include "sample-pads.h"

namespace vaultpad::secureworld {
namespace {

TEST(Bitmap, UnpacksSixBitsToEightSoThatTheEndsStayTheEnds) {
    const Bytes packed = {0xfc, 0x42, 0x0c, 0x83, 0xff, 0xff};
    const Bitmap bitmap = unpack(packed.data(), {2, 1}, Turn::None);
    // 6-bit components 3f 04 08 0c and 20 3f 3f 3f.
    EXPECT_EQ((std::vector<std::uint32_t>{0xff102030, 0x82ffffff}), bitmap.pixels);
}

TEST(Bitmap, TurnsWhileItUnpacks) {
    Bytes packed = packedPixel(255, 252, 0, 0);
    const Bytes second = packedPixel(255, 0, 252, 0);
    packed.insert(packed.end(), second.begin(), second.end());
    const Bitmap bitmap = unpack(packed.data(), {2, 1}, Turn::CounterClockwise);
    EXPECT_EQ((Size{1, 2}), bitmap.size);
    EXPECT_EQ((std::vector<std::uint32_t>{0xff00ff00, 0xffff0000}), bitmap.pixels);
}

Bitmap onePixel(std::uint32_t colour) {
    return Bitmap({1, 1}, colour);
}

std::uint32_t drawnOver(std::uint32_t source, std::uint32_t below) {
    Bitmap frame = onePixel(below);
    const Bitmap layer = onePixel(source);
    draw(&frame, {{&layer, 0, 0}});
    return frame.pixels[0];
}

TEST(Composer, DrawsPremultipliedSourceOverDestination) {
    EXPECT_EQ(0xff123456u, drawnOver(0xff123456u, 0xffffffffu));
    EXPECT_EQ(0xffabcdefu, drawnOver(0, 0xffabcdefu));
    // 0x40 + round(200 * 127 / 255) = 0x40 + 100
    EXPECT_EQ(0xffa4a4a4u, drawnOver(0x80404040u, 0xffc8c8c8u));
}

TEST(Composer, CutsAColourBrighterThanItsAlphaAtWhite) {
    EXPECT_EQ(0xffff9191u, drawnOver(0x10ff0000u, 0xff9b9b9bu));
}

TEST(Composer, DrawsLaterLayersOnTopAndLeavesOutWhatIsOutside) {
    Bitmap frame({3, 1}, kBackdrop);
    const Bitmap wide({3, 1}, 0xff000001);
    const Bitmap small = onePixel(0xff000002);
    draw(&frame, {{&wide, 1, 0}, {&small, 1, 0}, {&small, -1, 0}, {&small, 0, 7}});
    EXPECT_EQ((std::vector<std::uint32_t>{kBackdrop, 0xff000002, 0xff000001}), frame.pixels);
}

class RecordingDisplay : public Display {
public:
    explicit RecordingDisplay(std::vector<Bitmap>* pictures) : pictures_(pictures) {}
    void show(const Picture& picture) override {
        Bitmap copy({picture.width, picture.height}, 0);
        for (int y = 0; y < picture.height; ++y) {
            const std::uint32_t* row = picture.pixels + static_cast<std::size_t>(y) * picture.stride;
            std::copy(row, row + picture.width, copy.row(y));
        }
        pictures_->push_back(copy);
    }

private:
    std::vector<Bitmap>* pictures_;
};

TEST(Screen, ShowsThePadAloneOrTheWholeScreen) {
    const Bitmap layer({2, 1}, 0xff00ff00);
    for (const Screen::View view : {Screen::View::Pad, Screen::View::Whole}) {
        std::vector<Bitmap> pictures;
        Screen screen(std::make_unique<RecordingDisplay>(&pictures), view);
        screen.setSize({4, 3});
        screen.showPad({{&layer, 1, 1}}, {1, 1, 2, 1});
        ASSERT_EQ(1u, pictures.size());
        if (view == Screen::View::Pad) {
            EXPECT_EQ((std::vector<std::uint32_t>{0xff00ff00, 0xff00ff00}), pictures[0].pixels);
        } else {
            EXPECT_EQ((Size{4, 3}), pictures[0].size);
            EXPECT_EQ(kBackdrop, pictures[0].row(1)[0]);
            EXPECT_EQ(0xff00ff00, pictures[0].row(1)[1]);
        }
    }
}

TEST(Screen, ShowsAPictureAgainOnlyWhenItHasChanged) {
    std::vector<Bitmap> pictures;
    Screen screen(std::make_unique<RecordingDisplay>(&pictures), Screen::View::Pad);
    screen.setSize({4, 3});
    const Bitmap first({2, 1}, 0xff00ff00);
    const Bitmap second({2, 1}, 0xff0000ff);
    screen.showPad({{&first, 0, 0}}, {0, 0, 2, 1});
    screen.showPad({{&first, 0, 0}}, {0, 0, 2, 1});
    EXPECT_EQ(1u, pictures.size());
    screen.showPad({{&second, 0, 0}}, {0, 0, 2, 1});
    EXPECT_EQ(2u, pictures.size());
    screen.hide();
    screen.showPad({{&second, 0, 0}}, {0, 0, 2, 1});
    EXPECT_EQ(3u, pictures.size());
}

TEST(Screen, FillsTheLoadingBarFurtherWithEachStep) {
    std::vector<Bitmap> pictures;
    Screen screen(std::make_unique<RecordingDisplay>(&pictures), Screen::View::Pad);
    screen.setSize({400, 300});
    std::size_t filled = 0;
    for (unsigned step = 1; step <= 10; ++step) {
        screen.showLoadingBar({50, 50, 300, 200}, step);
        ASSERT_EQ(step, pictures.size());
        const std::uint32_t* row = pictures.back().row(100);
        const auto done = static_cast<std::size_t>(std::count(row, row + 300, 0xff3d9be9u));
        EXPECT_GT(done, filled);
        filled = done;
    }
}

}  // namespace
}  // namespace vaultpad::secureworld
