#include "pad/turn.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <vector>

#include "session/pad-place.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

constexpr std::array<Turn, 4> kTurns = {Turn::None, Turn::Clockwise, Turn::Half, Turn::CounterClockwise};
constexpr Size kPicture = {5, 3};
constexpr Rect kPart = {1, 0, 3, 2};

std::vector<std::uint32_t> numbered(Size size) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(size.width * size.height));
    std::iota(pixels.begin(), pixels.end(), 0u);
    return pixels;
}

TEST(Turn, FourQuarterTurnsAreTheIdentity) {
    Size size = kPicture;
    Rect part = kPart;
    std::vector<std::uint32_t> pixels = numbered(kPicture);
    for (int i = 0; i < 4; ++i) {
        part = turned(part, size, Turn::Clockwise);
        pixels = turned(pixels, size, Turn::Clockwise);
        size = turned(size, Turn::Clockwise);
    }
    EXPECT_EQ(kPicture, size);
    EXPECT_EQ(kPart, part);
    EXPECT_EQ(numbered(kPicture), pixels);
}

TEST(Turn, ATurnFollowedByItsInverseIsTheIdentity) {
    for (const Turn turn : kTurns) {
        const Size size = turned(kPicture, turn);
        EXPECT_EQ(Turn::None, combined(turn, inverse(turn)));
        EXPECT_EQ(kPart, turned(turned(kPart, kPicture, turn), size, inverse(turn)));
        EXPECT_EQ(numbered(kPicture), turned(turned(numbered(kPicture), kPicture, turn), size, inverse(turn)));
    }
}

TEST(Turn, ClockwiseUndoesCounterClockwise) {
    EXPECT_EQ(Turn::CounterClockwise, inverse(Turn::Clockwise));
    EXPECT_EQ(Turn::Clockwise, inverse(Turn::CounterClockwise));
}

TEST(Turn, TurnsOneAfterAnotherAreTheCombinedTurn) {
    for (const Turn first : kTurns) {
        for (const Turn second : kTurns) {
            const Turn both = combined(first, second);
            const Size size = turned(kPicture, first);
            EXPECT_EQ(turned(kPart, kPicture, both), turned(turned(kPart, kPicture, first), size, second));
            EXPECT_EQ(turned(numbered(kPicture), kPicture, both),
                      turned(turned(numbered(kPicture), kPicture, first), size, second));
        }
    }
}

TEST(Turn, PixelsGoWhereRectanglesGo) {
    for (const Turn turn : kTurns) {
        const std::vector<std::uint32_t> result = turned(numbered(kPicture), kPicture, turn);
        const int row = turned(kPicture, turn).width;
        for (int y = 0; y < kPicture.height; ++y) {
            for (int x = 0; x < kPicture.width; ++x) {
                const Rect place = turned(Rect{x, y, 1, 1}, kPicture, turn);
                EXPECT_EQ(static_cast<std::uint32_t>(y * kPicture.width + x),
                          result[static_cast<std::size_t>(place.y * row + place.x)]);
            }
        }
    }
}

TEST(Turn, ClockwiseMovesTheTopLeftCornerToTheTopRight) {
    // 0 1 2      3 0
    // 3 4 5  ->  4 1
    //            5 2
    EXPECT_EQ((std::vector<std::uint32_t>{3, 0, 4, 1, 5, 2}), turned(numbered({3, 2}), {3, 2}, Turn::Clockwise));
    EXPECT_EQ((Rect{1, 0, 1, 1}), turned(Rect{0, 0, 1, 1}, {3, 2}, Turn::Clockwise));
}

TEST(Turn, CounterClockwiseMovesTheTopLeftCornerToTheBottomLeft) {
    EXPECT_EQ((std::vector<std::uint32_t>{2, 5, 1, 4, 0, 3}), turned(numbered({3, 2}), {3, 2}, Turn::CounterClockwise));
    EXPECT_EQ((Rect{0, 2, 1, 1}), turned(Rect{0, 0, 1, 1}, {3, 2}, Turn::CounterClockwise));
}

// How the library turns an image of w x h before it sends it, pixel by pixel.
std::vector<std::uint32_t> asSent(const std::vector<std::uint32_t>& pixels, Size size, std::uint32_t orientation) {
    std::vector<std::uint32_t> result(pixels.size());
    for (int i = 0; i < size.height; ++i) {
        for (int j = 0; j < size.width; ++j) {
            const int row = orientation == VAULTPAD_TA_ORIENTATION_PORTRAIT ? j : size.width - 1 - j;
            const int column = orientation == VAULTPAD_TA_ORIENTATION_PORTRAIT ? size.height - 1 - i : i;
            result[static_cast<std::size_t>(row * size.height + column)] =
                pixels[static_cast<std::size_t>(i * size.width + j)];
        }
    }
    return result;
}

TEST(Turn, PutsImagesUprightThatArriveTurned) {
    for (const std::uint32_t orientation : {1u, 3u}) {
        const Turn turn = panelToViewer(orientation);
        EXPECT_EQ(numbered(kPicture), turned(asSent(numbered(kPicture), kPicture, orientation), {3, 5}, turn));
    }
    EXPECT_EQ(Turn::None, panelToViewer(VAULTPAD_TA_ORIENTATION_LANDSCAPE));
}

PadType pinPadAt(std::uint32_t orientation, int x, int y) {
    PadType type;
    type.type = VAULTPAD_TA_IME_PINPAD;
    type.orientation = orientation;
    type.baseX = x;
    type.baseY = y;
    return type;
}

TEST(PadPlace, ViewerSeesAPortraitPadAtTheBottomOfAnUprightScreen) {
    // The origins that the client announces for the PIN pad of 443 x 486.
    EXPECT_EQ((Size{1080, 1920}), viewerScreen(pinPadAt(1, 0, 318)));
    EXPECT_EQ((Rect{318, 1434, 443, 486}), expectedArea(pinPadAt(1, 0, 318)));
    EXPECT_EQ((Rect{319, 1434, 443, 486}), expectedArea(pinPadAt(3, 1434, 318)));
    EXPECT_EQ((Size{1920, 1080}), viewerScreen(pinPadAt(0, 738, 590)));
    EXPECT_EQ((Rect{738, 590, 443, 486}), expectedArea(pinPadAt(0, 738, 590)));
}

TEST(PadPlace, ViewerSeesAPartialImageWhereTheLayoutPutIt) {
    // An object at (10, 20) of 100 x 50 in the portrait PIN pad arrives at x = 486 - (20 + 50), y = 10.
    EXPECT_EQ((Rect{318 + 10, 1434 + 20, 100, 50}), viewerPlace({416, 318 + 10, 50, 100}, pinPadAt(1, 0, 318)));
    // The reversed one at x = 20, y = 443 - (10 + 100).
    EXPECT_EQ((Rect{319 + 10, 1434 + 20, 100, 50}),
              viewerPlace({1434 + 20, 318 + 333, 50, 100}, pinPadAt(3, 1434, 318)));
}

}  // namespace
}  // namespace vaultpad::secureworld
