// Where each pad stands on the screen, and the extents that rotated images are mirrored in.
#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

struct Origin : Named {
    int type;
    int enlarge;
    int orientation;
    int x;
    int y;
    int extent; /* rotation height in portrait, rotation width in portrait reversed */
};

const Origin kOrigins[] = {
    {"PinpadPortrait", 1, 0, 1, 0, 318, 486},
    {"PinpadReversed", 1, 0, 3, 1434, 318, 443},
    {"PinpadLandscape", 1, 0, 0, 738, 590, 0},
    {"EnlargedPinpadPortrait", 1, 1, 1, 0, 277, 578},
    {"EnlargedPinpadReversed", 1, 1, 3, 1342, 277, 525},
    {"EnlargedPinpadLandscape", 1, 1, 0, 697, 500, 0},
    {"KeyboardPortrait", 2, 0, 1, 0, 0, 480},
    {"KeyboardReversed", 2, 0, 3, 1440, 0, 1080},
    {"KeyboardLandscape", 2, 0, 0, 318, 590, 0},
    {"EnlargedKeyboardPortrait", 2, 1, 1, 0, 0, 480},
    {"EnlargedKeyboardReversed", 2, 1, 3, 1440, 0, 1080},
    {"EnlargedKeyboardLandscape", 2, 1, 0, 191, 500, 0},
};

}  // namespace

class ScreenOriginOf : public TeeClientTest, public testing::WithParamInterface<Origin> {
protected:
    ScreenOriginOf() {
        client->orientation_ = GetParam().orientation;
        EXPECT_EQ(client->send_ime_type(GetParam().type, 9, GetParam().enlarge, 0, 0), 0);
    }
};

TEST_P(ScreenOriginOf, IsSentAfterTheOrientation) {
    const Origin& row = GetParam();
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_IME_TYPE).written,
              words({row.type, 9, row.enlarge, 0, 0, row.orientation, row.x, row.y}));
}

TEST_P(ScreenOriginOf, SetsTheExtentThatAnImageIsPlacedWith) {
    const Origin& row = GetParam();
    // 3 x 2 pixels at (10, 20).
    OneObjectCanvas canvas(3, 2);
    ASSERT_EQ(client->loadImage(canvas.place(10, 20)), 0);
    const Values image = sentImage();
    const Values size = {image[1], image[2]};
    const Values place = {image[3], image[4]};
    switch (row.orientation) {
        case 1:
            EXPECT_EQ(size, words({2, 3}));
            EXPECT_EQ(place, words({row.extent - 22, 10}));
            break;
        case 3:
            EXPECT_EQ(size, words({2, 3}));
            EXPECT_EQ(place, words({20, row.extent - 13}));
            break;
        default:
            EXPECT_EQ(size, words({3, 2}));
            EXPECT_EQ(place, words({10, 20}));
    }
}

INSTANTIATE_TEST_SUITE_P(, ScreenOriginOf, testing::ValuesIn(kOrigins), CaseName());

// Only the extent of the current orientation is written, and portrait adds the rotation width on purpose.
TEST_F(TeeClientTest, RotationWidthOfAnEarlierOrientationShiftsPortraitImages) {
    client->orientation_ = 3;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    client->orientation_ = 1;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    OneObjectCanvas canvas(3, 2);
    ASSERT_EQ(client->loadImage(canvas.place(10, 20)), 0);
    const Values image = sentImage();
    EXPECT_EQ((Values{image[3], image[4]}), words({486 - 22, 443 + 10}));
}

TEST_F(TeeClientTest, RefusedImeTypeLeavesTheExtentsAlone) {
    client->orientation_ = 3;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    ASSERT_EQ(client->send_ime_type(3, 0, 0, 0, 0), -1);
    OneObjectCanvas canvas(100, 5);
    ASSERT_EQ(client->loadImage(canvas.place(10, 20)), 0);
    const Values image = sentImage();
    EXPECT_EQ((Values{image[3], image[4]}), words({20, 333}));
}

}  // namespace vaultpad::test
