/* Texts, compared with pictures of them. */
#include <Evas.h>

#include <cstring>

#include "drawing-fixture.h"

namespace vaultpad::test {

namespace {

constexpr const char* kFamily = "Noto Sans";
constexpr int kKeyWidth = 118;
constexpr int kKeyHeight = 70;

// Another version of the rasteriser shades edges otherwise: this much on every edge, more in a few places.
constexpr Tolerance kTolerance = {40, 30};

bool fontIsInstalled() {
    Evas* canvas = evas_new();
    Eina_List* families = evas_font_available_list(canvas);
    bool found = false;
    const Eina_List* node = nullptr;
    void* family = nullptr;
    EINA_LIST_FOREACH(families, node, family) {
        found = found || std::strncmp(static_cast<const char*>(family), kFamily, std::strlen(kFamily)) == 0;
    }
    evas_font_available_list_free(canvas, families);
    evas_free(canvas);
    return found;
}

class RendererPictures : public DrawingTest {
protected:
    RendererPictures() {
        Picture key(kKeyWidth, kKeyHeight, 0xFF3A3F44);
        key.fill(2, 2, kKeyWidth - 4, kKeyHeight - 4, 0xFF202428);
        writeImage("key.png", key);
        layout_.imageBaseDirectory(folder_.path())
            .image({{"id", "key"}, {"type", "file"}, {"url", "key.png"}})
            .image({{"id", "space"}, {"width", "240"}, {"height", "70"}})
            .font({{"id", "white"}, {"family", kFamily}, {"size", "28"}, {"color", "FFFFFF"}})
            .font({{"id", "blue"}, {"family", kFamily}, {"size", "28"}, {"color", "2060C0"}})
            .font({{"id", "orange"}, {"family", kFamily}, {"size", "20"}, {"color", "FF8000"}});
    }

    void SetUp() override { ASSERT_TRUE(fontIsInstalled()) << kFamily << " is missing: install fonts-noto-core"; }

    static ElementPointer text(const std::string& ref, const std::string& font, const Attributes& place) {
        Attributes attributes = {{"ref", ref}, {"font", font}};
        attributes.insert(attributes.end(), place.begin(), place.end());
        return makeElement("object", attributes);
    }

    /* Draws the image with what is nested in it. */
    Picture draw(const std::string& image, const std::vector<ElementPointer>& children) {
        layout_.object({{"id", "top"}, {"type", "image"}, {"ref", image}, {"x", "0"}, {"y", "0"}}, children);
        return renderOne(renderer_, layout_.container()).image;
    }

    static testing::AssertionResult matches(const Picture& picture, const std::string& name) {
        return matchesReference(picture, VAULTPAD_REFERENCE_FOLDER "/" + name + ".png", VAULTPAD_PICTURE_FOLDER,
                                kTolerance);
    }

    LayoutBuilder layout_;
    graphic::ObjectRenderer renderer_{320, 100};
};

const Attributes kCentred = {{"text-align", "center"}, {"line-height", "inherit"}};

TEST_F(RendererPictures, ShowADigitInTheMiddleOfItsKey) {
    layout_.string({{"id", "5"}, {"value", "5"}});
    EXPECT_TRUE(matches(draw("key", {text("5", "white", kCentred)}), "key-with-digit"));
}

TEST_F(RendererPictures, ShowALongLabelShrunkToItsKey) {
    layout_.string({{"id", "long"}, {"value", "Completed"}})
        .font({{"id", "large"}, {"family", kFamily}, {"size", "40"}, {"color", "FFFFFF"}});
    EXPECT_TRUE(matches(draw("key", {text("long", "large", kCentred)}), "key-with-shrunk-label"));
}

TEST_F(RendererPictures, ShowTextsAtBothEdgesInTheirColours) {
    layout_.string({{"id", "left"}, {"value", "PIN"}}).string({{"id", "right"}, {"value", "0/4"}});
    EXPECT_TRUE(matches(
        draw("space", {text("left", "blue", {{"text-align", "left"}, {"margin", "12"}, {"top", "4"}}),
                       text("right", "orange", {{"text-align", "right"}, {"margin", "12"}, {"line-height", "20"}})}),
        "texts-at-both-edges"));
}

TEST_F(RendererPictures, ShowOtherScriptsAndSigns) {
    layout_.string({{"id", "scripts"}, {"value", "\xC3\x84\xC3\xA9\xC3\x9F \xCE\xA9 \xD0\x96 \xE2\x82\xAC @#&"}});
    EXPECT_TRUE(matches(draw("space", {text("scripts", "blue", kCentred)}), "other-scripts"));
}

TEST_F(RendererPictures, ShowATextAboveNestedImages) {
    writeImage("dot.png", Picture(40, 40, 0x80800000));
    layout_.image({{"id", "dot"}, {"type", "file"}, {"url", "dot.png"}}).string({{"id", "ok"}, {"value", "OK"}});
    const ElementPointer dot =
        makeElement("object", {{"type", "image"}, {"ref", "dot"}, {"left", "20"}, {"top", "15"}},
                    {makeElement("object", {{"ref", "ok"}, {"font", "orange"}, {"left", "30"}, {"top", "10"}})});
    // The text has room in its parent only as long as it is small.
    EXPECT_TRUE(matches(draw("key", {dot}), "text-above-images"));
}

TEST_F(RendererPictures, AreOfTheTextAloneForATopLevelText) {
    layout_.string({{"id", "title"}, {"value", "Enter PIN"}})
        .object({{"id", "title"}, {"ref", "title"}, {"font", "blue"}, {"x", "10"}, {"y", "20"}});
    const Delivery delivery = renderOne(renderer_, layout_.container());
    EXPECT_TRUE(matches(delivery.image, "title"));
}

// What the tolerance must not let through.
TEST_F(RendererPictures, AreNoticedWhenTheTextMovesByOnePixelChangesOrTakesAnotherColour) {
    const Picture reference = readPng(VAULTPAD_REFERENCE_FOLDER "/key-with-digit.png");
    const auto differs = [&reference](const Picture& picture) {
        return differenceBetween(picture, reference, kTolerance.component).pixels > kTolerance.pixels;
    };
    layout_.string({{"id", "5"}, {"value", "5"}}).string({{"id", "6"}, {"value", "6"}});
    Picture moved(kKeyWidth, kKeyHeight);
    for (int y = 0; y < kKeyHeight; ++y) {
        for (int x = 0; x < kKeyWidth; ++x) {
            const bool inside = x > 4 && x < kKeyWidth - 4;
            moved.pixel(x, y, reference.pixel(inside ? x - 1 : x, y));
        }
    }
    EXPECT_TRUE(differs(moved));
    EXPECT_TRUE(differs(draw("key", {text("6", "white", kCentred)})));
    EXPECT_TRUE(differs(draw("key", {text("5", "orange", kCentred)})));
    EXPECT_TRUE(differs(draw("key", {})));
}

}  // namespace

}  // namespace vaultpad::test
