// loadImage: from a canvas into the image table.
#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Three distinguishable pixels in a row and three below: what packing leaves of them is their blue component / 4.
OneObjectCanvas sixPixels() {
    return {3, 2, {0x04, 0x08, 0x0C, 0x10, 0x14, 0x18}};
}

Bytes blues(const Bytes& packed) {
    Bytes result;
    for (std::size_t i = 2; i < packed.size(); i += 3) {
        result.push_back(packed[i]);
    }
    return result;
}

}  // namespace

TEST_F(TeeClientTest, ImageIsNamedAfterItsObjectAndPlacedWhereItStands) {
    OneObjectCanvas canvas(2, 1, {0xFF112233, 0x80FFFFFF});
    canvas.object().id("key.5.normal");
    ASSERT_EQ(client->loadImage(canvas.place(-3, 40)), 0);
    EXPECT_EQ(sentImage(), (Values{"/root/key.5.normal.ppm", 2u, 1u, static_cast<std::uint32_t>(-3), 40u, 6u,
                                   Bytes{0xFC, 0x42, 0x0C, 0x83, 0xFF, 0xFF}}));
}

TEST_F(TeeClientTest, ImageIsTheTopLeftCornerWhereverItsObjectStands) {
    OneObjectCanvas canvas = sixPixels();
    canvas.object().width(2);
    canvas.object().left(1);
    ASSERT_EQ(client->loadImage(canvas.place(1, 1)), 0);
    EXPECT_EQ(blues(std::get<Bytes>(sentImage()[6])), (Bytes{1, 2, 4, 5}));
}

TEST_F(TeeClientTest, PortraitImageIsTurnedClockwiseWithItsSidesSwapped) {
    client->orientation_ = 1;
    OneObjectCanvas canvas = sixPixels();
    ASSERT_EQ(client->loadImage(canvas), 0);
    const Values image = sentImage();
    EXPECT_EQ((Values{image[1], image[2], image[5]}), words({2, 3, 18}));
    EXPECT_EQ(blues(std::get<Bytes>(image[6])), (Bytes{4, 1, 5, 2, 6, 3}));
}

TEST_F(TeeClientTest, PortraitReversedImageIsTurnedCounterClockwiseWithItsSidesSwapped) {
    client->orientation_ = 3;
    OneObjectCanvas canvas = sixPixels();
    ASSERT_EQ(client->loadImage(canvas), 0);
    const Values image = sentImage();
    EXPECT_EQ((Values{image[1], image[2], image[5]}), words({2, 3, 18}));
    EXPECT_EQ(blues(std::get<Bytes>(image[6])), (Bytes{3, 6, 2, 5, 1, 4}));
}

TEST_F(TeeClientTest, RotatedImageIsTheTopLeftCornerOfAWiderCanvas) {
    client->orientation_ = 1;
    OneObjectCanvas canvas = sixPixels();
    canvas.object().width(2);
    ASSERT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(blues(std::get<Bytes>(sentImage()[6])), (Bytes{4, 1, 5, 2}));
}

TEST_F(TeeClientTest, OrientationTwoIsNotRotated) {
    client->orientation_ = 2;
    OneObjectCanvas canvas = sixPixels();
    ASSERT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(blues(std::get<Bytes>(sentImage()[6])), (Bytes{1, 2, 3, 4, 5, 6}));
}

TEST_F(TeeClientTest, ReversedImageAtTenOfWidthOneHundredIsRecordedAt333) {
    client->orientation_ = 3;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    OneObjectCanvas canvas(100, 30);
    ASSERT_EQ(client->loadImage(canvas.place(10, 70)), 0);
    const Values image = sentImage();
    EXPECT_EQ((Values{image[1], image[2], image[3], image[4], image[5]}), words({30, 100, 70, 333, 9000}));
}

TEST_F(TeeClientTest, ImageNameIsCutTo511Characters) {
    OneObjectCanvas canvas(1, 1);
    canvas.object().id(std::string(600, 'k'));
    ASSERT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(std::get<std::string>(sentImage()[0]), "/root/" + std::string(505, 'k'));
}

TEST_F(TeeClientTest, The513thImageReturnsZeroAndChangesNothing) {
    OneObjectCanvas canvas(1, 1);
    for (int i = 0; i < 512; ++i) {
        canvas.object().id(std::to_string(i));
        ASSERT_EQ(client->loadImage(canvas), 0) << i;
    }
    canvas.object().id("too many");
    EXPECT_EQ(client->loadImage(canvas), 0);
    ASSERT_EQ(client->send_image_data(), 0);
    const Block block = platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA);
    EXPECT_EQ(std::get<std::uint32_t>(block.written.front()), 512u);
    EXPECT_EQ(std::get<std::string>(block.written[block.written.size() - 7]), "/root/511.ppm");
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(TeeClientTest, The513thRotatedImageIsDroppedToo) {
    client->orientation_ = 3;
    OneObjectCanvas canvas(1, 1);
    for (int i = 0; i < 513; ++i) {
        ASSERT_EQ(client->loadImage(canvas), 0) << i;
    }
    ASSERT_EQ(client->send_image_data(), 0);
    EXPECT_EQ(std::get<std::uint32_t>(platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA).written.front()), 512u);
}

struct TooLarge : Named {
    int width;
    int height;
};

class ImageLargerThanTheCanvas : public TeeClientTest, public testing::WithParamInterface<TooLarge> {};

TEST_P(ImageLargerThanTheCanvas, IsRefusedAndNotRecorded) {
    const TooLarge& size = GetParam();
    OneObjectCanvas canvas(4, 3);
    canvas.object().width(size.width);
    canvas.object().height(size.height);
    EXPECT_EQ(client->loadImage(canvas), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("object key of " + std::to_string(size.width) + " x " +
                                                 std::to_string(size.height) + " exceeds the canvas of 4 x 3"));
    EXPECT_EQ(client->send_image_data(), 1);
}

INSTANTIATE_TEST_SUITE_P(, ImageLargerThanTheCanvas,
                         testing::Values(TooLarge{"Wider", 5, 3}, TooLarge{"Higher", 4, 4},
                                         TooLarge{"NegativeWidth", -1, 2}, TooLarge{"NegativeHeight", 2, -1}),
                         CaseName());

struct FarPlace : Named {
    int orientation;
    int x;
    int y;
};

class RotatedImageTooFarAway : public TeeClientTest, public testing::WithParamInterface<FarPlace> {};

TEST_P(RotatedImageTooFarAway, IsRefusedAndNotRecorded) {
    client->orientation_ = GetParam().orientation;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    OneObjectCanvas canvas(4, 3);
    canvas.object().x(GetParam().x);
    canvas.object().y(GetParam().y);
    EXPECT_EQ(client->loadImage(canvas), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("object key at " + std::to_string(GetParam().x) + ", " +
                                                 std::to_string(GetParam().y) + " is too far away to be turned"));
    EXPECT_EQ(client->send_image_data(), 1);
}

INSTANTIATE_TEST_SUITE_P(, RotatedImageTooFarAway,
                         testing::Values(FarPlace{"Above", 1, 0, INT32_MIN}, FarPlace{"LeftOf", 3, INT32_MIN, 0}),
                         CaseName());

TEST_F(TeeClientTest, RotatedImageAtTheLastPlaceIsTaken) {
    client->orientation_ = 1;
    ASSERT_EQ(client->send_ime_type(1, 0, 0, 0, 0), 0);
    OneObjectCanvas canvas(4, 3);
    canvas.object().y(INT32_MAX);
    EXPECT_EQ(client->loadImage(canvas), 0);
}

struct Allocation : Named {
    int orientation;
    int nth;
    const char* message;
};

class ImageWithoutMemory : public TeeClientTest, public testing::WithParamInterface<Allocation> {};

TEST_P(ImageWithoutMemory, IsRefusedAndTheNextOneIsTaken) {
    client->orientation_ = GetParam().orientation;
    OneObjectCanvas canvas(3, 2);
    libc().failingAllocation = GetParam().nth;
    const int result = client->loadImage(canvas);
    libc().failingAllocation = 0;
    EXPECT_EQ(result, -1);
    EXPECT_THAT(platform().errors(), ElementsAre(GetParam().message));
    EXPECT_EQ(client->send_image_data(), 1) << "a failed image was recorded";
    EXPECT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(client->send_image_data(), 0);
}

INSTANTIATE_TEST_SUITE_P(, ImageWithoutMemory,
                         testing::Values(Allocation{"ForPackedPixels", 0, 1, "memory allocation fail;"},
                                         Allocation{"ForTheSource", 1, 1, "src memory allocation fail;"},
                                         Allocation{"ForTheTurnedPixels", 1, 2, "memory allocation fail;"},
                                         Allocation{"ForPackedTurnedPixels", 1, 3, "memory allocation fail;"},
                                         Allocation{"ForTheReversedSource", 3, 1, "src memory allocation fail;"}),
                         CaseName());

TEST_F(TeeClientTest, ImageTakesOneAllocationAndARotatedOneThree) {
    constexpr int kPlenty = 100;
    OneObjectCanvas canvas(50, 40);
    libc().failingAllocation = kPlenty;
    ASSERT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(kPlenty - libc().failingAllocation, 1);
    client->orientation_ = 1;
    libc().failingAllocation = kPlenty;
    ASSERT_EQ(client->loadImage(canvas), 0);
    EXPECT_EQ(kPlenty - libc().failingAllocation, 3);
    libc().failingAllocation = 0;
}

}  // namespace vaultpad::test
