#include "placement-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextItems : public PlacementTest {
protected:
    /* Draws a text in a font with the given attributes, on which a family and a size are set unless given. */
    std::shared_ptr<graphic::Object> drawIn(const Attributes& font, const Attributes& string = {{"value", "OK"}}) {
        Attributes fontItem = {{"id", "font"}, {"family", "Noto Sans"}, {"size", "20"}, {"color", "FFFFFF"}};
        fontItem.insert(fontItem.end(), font.begin(), font.end());
        Attributes stringItem = {{"id", "ok"}};
        stringItem.insert(stringItem.end(), string.begin(), string.end());
        layout_.font(fontItem).string(stringItem);
        return place(makeElement("object", {{"ref", "ok"}, {"font", "font"}}));
    }

    Colour colourOf(const std::string& text) {
        toolkit_.colours.clear();
        drawIn({{"color", text}});
        EXPECT_EQ(toolkit_.colours.size(), 1u);
        return toolkit_.colours.empty() ? Colour{} : toolkit_.colours.front();
    }

    std::string colourError(const std::string& text) {
        try {
            drawIn({{"color", text}});
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "no exception";
    }

    // The sizes that were set when a text is ten pixels wide per unit of size.
    std::vector<int> sizesSet(int size, int parentWidth) {
        parent_ = makeParent(0, 0, parentWidth, 100);
        toolkit_.textExtent = [](int current) { return Extent{10 * current, current}; };
        toolkit_.fonts.clear();
        drawIn({{"size", std::to_string(size)}});
        std::vector<int> sizes;
        for (const FontSetting& font : toolkit_.fonts) {
            EXPECT_EQ(font.family, "Noto Sans");
            sizes.push_back(font.size);
        }
        return sizes;
    }
};

TEST_F(TextItems, AreDrawnForEveryTypeButImage) {
    for (const char* type : {"", "text", "Image", "file"}) {
        toolkit_.calls.clear();
        place(makeElement("object", {{"type", type}, {"ref", "ok"}, {"font", "font"}}));
        EXPECT_EQ(toolkit_.count("add text"), 1) << type;
    }
}

TEST_F(TextItems, TakeSixHexadecimalDigitsForTheColour) {
    EXPECT_EQ(colourOf("FF8000"), (Colour{255, 128, 0, 255}));
    EXPECT_EQ(colourOf("ff8000"), (Colour{255, 128, 0, 255}));
    EXPECT_EQ(colourOf("fF80aB"), (Colour{255, 128, 171, 255}));
    EXPECT_EQ(colourOf("000000"), (Colour{0, 0, 0, 255}));
    EXPECT_EQ(colourOf("010203"), (Colour{1, 2, 3, 255}));
}

TEST_F(TextItems, IgnoreWhatFollowsTheSixthDigitOfTheColour) {
    EXPECT_EQ(colourOf("FF800040"), (Colour{255, 128, 0, 255}));
}

TEST_F(TextItems, AreBlackWhenTheColourStartsWithANumberSign) {
    EXPECT_EQ(colourOf("#FF8000"), (Colour{0, 0, 0, 255}));
}

// The stream's error state is cleared for each component, its rest is not: what is no digit stays in front.
TEST_F(TextItems, LoseTheComponentsFromTheFirstUnreadableOneOn) {
    EXPECT_EQ(colourOf("FFG080"), (Colour{255, 0, 0, 255}));
    EXPECT_EQ(colourOf("FF80G0"), (Colour{255, 128, 0, 255}));
    EXPECT_EQ(colourOf("zzFFFF"), (Colour{0, 0, 0, 255}));
}

TEST_F(TextItems, CarryAnUnreadDigitsRestIntoTheNextComponent) {
    EXPECT_EQ(colourOf("1GFFFF"), (Colour{1, 0, 0, 255}));
}

TEST_F(TextItems, ReadTheHexadecimalPrefixOverTwoComponents) {
    EXPECT_EQ(colourOf("0x10FF"), (Colour{0, 16, 255, 255}));
}

TEST_F(TextItems, TakeAShortColoursMissingPartForZero) {
    EXPECT_EQ(colourOf("FF80"), (Colour{255, 128, 0, 255}));
    EXPECT_EQ(colourOf("FF804"), (Colour{255, 128, 4, 255}));
}

TEST_F(TextItems, RefuseAColourOfLessThanFourCharacters) {
    for (const char* colour : {"", "F", "FF", "FF8"}) {
        EXPECT_EQ(colourError(colour).find("basic_string::substr"), 0u) << colour << ": " << colourError(colour);
    }
}

TEST_F(TextItems, AreDrawnAsWritten) {
    drawIn({}, {{"value", "Gr\xC3\xBC\xC3\x9F"}});
    EXPECT_THAT(toolkit_.texts, ElementsAre("Gr\xC3\xBC\xC3\x9F"));
    EXPECT_THAT(toolkit_.translated, IsEmpty());
}

TEST_F(TextItems, AreTranslatedInTheLibrarysDomainWhenI18nIsTrue) {
    drawIn({}, {{"value", "ID_DONE"}, {"i18n", "true"}});
    EXPECT_THAT(toolkit_.translated, ElementsAre("vaultpad: ID_DONE"));
    EXPECT_THAT(toolkit_.texts, ElementsAre("translated"));
}

TEST_F(TextItems, AreNotTranslatedForAnyOtherI18n) {
    for (const char* i18n : {"True", "TRUE", "1", "yes", "false", "", " true"}) {
        toolkit_.texts.clear();
        drawIn({}, {{"value", "ID_DONE"}, {"i18n", i18n}});
        EXPECT_THAT(toolkit_.texts, ElementsAre("ID_DONE")) << i18n;
    }
    EXPECT_THAT(toolkit_.translated, IsEmpty());
}

TEST_F(TextItems, MayBeEmpty) {
    drawIn({}, {});
    EXPECT_THAT(toolkit_.texts, ElementsAre(""));
    EXPECT_THAT(toolkit_.translated, IsEmpty());
}

TEST_F(TextItems, KeepTheirSizeWhenTheyFit) {
    EXPECT_THAT(sizesSet(40, 1920), ElementsAre(40));
}

TEST_F(TextItems, ShrinkOneByOneUntilTheyFit) {
    EXPECT_THAT(sizesSet(40, 394), ElementsAre(40, 39, 38, 37));
}

TEST_F(TextItems, NeedOnePixelMoreThanTheirWidthAndTheAllowance) {
    EXPECT_THAT(sizesSet(40, 424), ElementsAre(40));
    EXPECT_THAT(sizesSet(40, 423), ElementsAre(40, 39));
}

TEST_F(TextItems, ShrinkToNothingWhenTheyNeverFit) {
    EXPECT_THAT(sizesSet(4, 23), ElementsAre(4, 3, 2, 1, 0));
    EXPECT_THAT(sizesSet(1, 0), ElementsAre(1, 0));
    EXPECT_THAT(sizesSet(2, -100), ElementsAre(2, 1, 0));
}

TEST_F(TextItems, AreNeverAdjustedFromASizeBelowOne) {
    EXPECT_THAT(sizesSet(0, 0), ElementsAre(0));
    EXPECT_THAT(sizesSet(-3, 0), ElementsAre(-3));
}

TEST_F(TextItems, FitTheParentAndNotTheCanvas) {
    parent_ = makeParent(0, 0, 143, 40);
    toolkit_.textExtent = [](int size) { return Extent{10 * size, size}; };
    const auto object = drawIn({{"size", "20"}});
    EXPECT_EQ(object->width(), 110);
    EXPECT_EQ(object->height(), 11);
}

TEST_F(TextItems, NeedANumberForTheSize) {
    EXPECT_THROW(drawIn({{"size", ""}}), std::invalid_argument);
    EXPECT_THROW(drawIn({{"size", "big"}}), std::invalid_argument);
    EXPECT_THROW(drawIn({{"size", "9999999999"}}), std::out_of_range);
}

TEST_F(TextItems, ReadTheColourBeforeTheSize) {
    EXPECT_THROW(drawIn({{"color", ""}, {"size", "big"}}), std::out_of_range);
}

TEST_F(TextItems, TakeAnAbsentFamilyForTheEmptyName) {
    drawIn({{"family", ""}});
    EXPECT_THAT(toolkit_.fonts, ElementsAre(FontSetting{"", 20}));
}

TEST_F(TextItems, KeepTheMeasuredExtent) {
    EXPECT_EQ(placeText({101, 37}, {})->toString(), "id: text, top: 0, left: 0, width: 101, height: 37");
}

}  // namespace

}  // namespace vaultpad::test
