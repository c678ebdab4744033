#include <algorithm>

#include "drawing-fixture.h"

namespace vaultpad::test {

namespace {

using testing::IsEmpty;

constexpr int kWidth = 40;
constexpr int kHeight = 30;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kGreen = 0xFF00FF00;
constexpr std::uint32_t kBlue = 0xFF0000FF;
constexpr std::uint32_t kTransparent = 0;
// Scaling of a component by an alpha may be rounded either way.
constexpr int kRounding = 1;

class RendererPixels : public DrawingTest {
protected:
    RendererPixels() { layout_.imageBaseDirectory(folder_.path()); }

    void addImage(const std::string& id, const Picture& picture) {
        writeImage(id + ".png", picture);
        layout_.image({{"id", id}, {"type", "file"}, {"url", id + ".png"}});
    }

    static Attributes imageObject(const std::string& ref, const Attributes& place) {
        Attributes attributes = {{"id", ref}, {"type", "image"}, {"ref", ref}};
        attributes.insert(attributes.end(), place.begin(), place.end());
        return attributes;
    }

    static ElementPointer nested(const std::string& ref, const Attributes& place) {
        return makeElement("object", imageObject(ref, place));
    }

    /* Draws a top-level image object. */
    Delivery draw(const std::string& ref, const Attributes& place = {},
                  const std::vector<ElementPointer>& children = {}) {
        Attributes attributes = imageObject(ref, place);
        attributes.insert(attributes.end(), {{"x", "0"}, {"y", "0"}});
        layout_.object(attributes, children);
        return renderOne(renderer_, layout_.container());
    }

    LayoutBuilder layout_;
    graphic::ObjectRenderer renderer_{kWidth, kHeight};
};

void expectSame(const Picture& picture, const Picture& expected, int component = 0) {
    const Difference difference = differenceBetween(picture, expected, component);
    ASSERT_TRUE(difference.sameSize);
    EXPECT_EQ(difference.pixels, 0u) << "first at " << difference.firstX << "," << difference.firstY << ": " << std::hex
                                     << picture.pixel(difference.firstX, difference.firstY) << " instead of "
                                     << expected.pixel(difference.firstX, difference.firstY);
}

Picture quarters() {
    Picture picture(6, 4, kRed);
    picture.fill(3, 0, 3, 2, kGreen);
    picture.fill(0, 2, 3, 2, kBlue);
    picture.fill(3, 2, 3, 2, kTransparent);
    return picture;
}

TEST_F(RendererPixels, OfAnImageAreTheFilesAtTheOrigin) {
    addImage("quarters", quarters());
    const Delivery delivery = draw("quarters");
    expectSame(delivery.image, quarters());
    Picture whole(kWidth, kHeight);
    whole.fill(0, 0, 3, 2, kRed);
    whole.fill(3, 0, 3, 2, kGreen);
    whole.fill(0, 2, 3, 2, kBlue);
    expectSame(delivery.whole, whole);
}

TEST_F(RendererPixels, OfAnImageAreMovedToItsPlace) {
    addImage("red", Picture(4, 3, kRed));
    Picture whole(kWidth, kHeight);
    whole.fill(10, 5, 4, 3, kRed);
    expectSame(draw("red", {{"left", "10"}, {"top", "5"}}).whole, whole);
}

TEST_F(RendererPixels, OutsideTheCanvasAreCutOff) {
    addImage("quarters", quarters());
    Picture whole(kWidth, kHeight);
    whole.fill(0, 0, 1, 1, kRed);
    whole.fill(1, 0, 3, 1, kGreen);
    whole.fill(0, 1, 1, 2, kBlue);
    expectSame(draw("quarters", {{"left", "-2"}, {"top", "-1"}}).whole, whole);
    addImage("far", Picture(4, 3, kRed));
    expectSame(draw("far", {{"left", "1000"}, {"top", "-1000"}}).whole, Picture(kWidth, kHeight));
}

TEST_F(RendererPixels, OfASemitransparentImageArePremultiplied) {
    Picture picture(4, 3);
    const std::uint32_t colours[] = {0x80800000, 0x40000040, 0xC8646432, 0x01010101};
    for (int x = 0; x < picture.width; ++x) {
        picture.fill(x, 0, 1, picture.height, colours[x]);
    }
    addImage("glass", picture);
    const Picture drawn = draw("glass").image;
    expectSame(drawn, picture, kRounding);
    for (const std::uint32_t pixel : drawn.pixels) {
        for (const int shift : {0, 8, 16}) {
            EXPECT_LE((pixel >> shift) & 0xFF, pixel >> 24) << std::hex << pixel;
        }
    }
}

TEST_F(RendererPixels, OfATransparentRectangleAreNone) {
    layout_.image({{"id", "space"}, {"width", "20"}, {"height", "10"}});
    const Delivery delivery = draw("space");
    EXPECT_EQ(delivery.image.width, 20);
    EXPECT_EQ(delivery.image.height, 10);
    expectSame(delivery.whole, Picture(kWidth, kHeight));
}

TEST_F(RendererPixels, OfNestedItemsCoverTheirParentInDocumentOrder) {
    addImage("red", Picture(12, 10, kRed));
    addImage("green", Picture(6, 6, kGreen));
    addImage("blue", Picture(4, 4, kBlue));
    Picture expected(12, 10, kRed);
    expected.fill(3, 2, 6, 6, kGreen);
    expected.fill(0, 0, 4, 4, kBlue);
    expectSame(
        draw("red", {}, {nested("green", {{"text-align", "center"}, {"line-height", "inherit"}}), nested("blue", {})})
            .image,
        expected);
}

TEST_F(RendererPixels, OfASemitransparentNestedItemAreMixedWithItsParent) {
    addImage("red", Picture(4, 4, kRed));
    addImage("glass", Picture(2, 2, 0x80000080));
    Picture expected(4, 4, kRed);
    expected.fill(0, 0, 2, 2, 0xFF7F0080);
    expectSame(draw("red", {}, {nested("glass", {})}).image, expected, kRounding);
}

TEST_F(RendererPixels, OfANestedImageShowThroughATransparentRectangle) {
    layout_.image({{"id", "space"}, {"width", "20"}, {"height", "10"}});
    addImage("green", Picture(6, 6, kGreen));
    Picture expected(20, 10);
    expected.fill(14, 2, 6, 6, kGreen);
    expectSame(draw("space", {}, {nested("green", {{"text-align", "right"}, {"line-height", "inherit"}})}).image,
               expected);
}

TEST_F(RendererPixels, OfAnEarlierLargerImageAreGone) {
    addImage("large", Picture(kWidth, kHeight, kRed));
    addImage("small", Picture(2, 2, kGreen));
    layout_.image({{"id", "space"}, {"width", "30"}, {"height", "20"}});
    expectSame(draw("large").whole, Picture(kWidth, kHeight, kRed));
    Picture small(kWidth, kHeight);
    small.fill(0, 0, 2, 2, kGreen);
    expectSame(draw("small").whole, small);
    EXPECT_TRUE(render(renderer_, layout_.container()).deliveries.empty());
    expectSame(draw("space").whole, Picture(kWidth, kHeight));
}

TEST_F(RendererPixels, OfAnObjectThatIsNeverDeliveredAreGoneFromTheNext) {
    addImage("large", Picture(kWidth, kHeight, kRed));
    layout_.image({{"id", "space"}, {"width", "30"}, {"height", "20"}});
    layout_.object(imageObject("large", {}));
    EXPECT_THAT(render(renderer_, layout_.container()).deliveries, IsEmpty());
    layout_.container()->objects()->clear();
    expectSame(draw("space").whole, Picture(kWidth, kHeight));
}

// What an error leaves on the canvas is not erased: this is known, and ends with the renderer.
TEST_F(RendererPixels, OfAnObjectThatFailedHalfwayStayOnTheCanvas) {
    addImage("large", Picture(kWidth, kHeight, kRed));
    layout_.image({{"id", "space"}, {"width", "30"}, {"height", "20"}});
    layout_.object(imageObject("large", {{"x", "abc"}, {"y", "1"}}));
    EXPECT_EQ(render(renderer_, layout_.container()).errors.size(), 1u);
    layout_.container()->objects()->clear();
    expectSame(draw("space").whole, Picture(kWidth, kHeight, kRed));
}

TEST_F(RendererPixels, AreReadyWhenTheCallbackRuns) {
    addImage("red", Picture(4, 3, kRed));
    layout_.object(imageObject("red", {{"x", "0"}, {"y", "0"}}));
    std::uint32_t first = 0;
    renderer_.render(
        layout_.container(), [&first](graphic::Canvas& canvas) { first = canvas.buffer()[0]; },
        [](const std::string& text) { ADD_FAILURE() << text; });
    EXPECT_EQ(first, kRed);
}

}  // namespace

}  // namespace vaultpad::test
