#include "placement-fixture.h"

namespace vaultpad::test {

namespace {

class Placement : public PlacementTest {
protected:
    int left(const Attributes& attributes) { return placeBox(attributes)->left(); }
    int top(const Attributes& attributes) { return placeBox(attributes)->top(); }
};

TEST_F(Placement, CentresATextOf101PixelsIn1920At909) {
    EXPECT_EQ(placeText({101, 37}, {{"text-align", "center"}})->left(), 909);
}

TEST_F(Placement, PutsATextOf101PixelsWithMargin10At1809OnTheRight) {
    EXPECT_EQ(placeText({101, 37}, {{"text-align", "right"}, {"margin", "10"}})->left(), 1809);
}

TEST_F(Placement, CentresATextOf37PixelsIn1080At521) {
    EXPECT_EQ(placeText({101, 37}, {{"line-height", "inherit"}})->top(), 521);
}

TEST_F(Placement, TakesAnExplicitTopBeforeLineHeight) {
    EXPECT_EQ(top({{"top", "12"}, {"line-height", "inherit"}}), 12);
    EXPECT_EQ(top({{"top", "12"}, {"line-height", "99"}}), 12);
    EXPECT_EQ(top({{"top", "0"}, {"line-height", "99"}}), 0);
}

TEST_F(Placement, TakesAnExplicitLeftBeforeTextAlignAndMargin) {
    EXPECT_EQ(left({{"left", "5"}, {"text-align", "right"}, {"margin", "10"}}), 5);
    EXPECT_EQ(left({{"left", "0"}, {"text-align", "center"}}), 0);
}

TEST_F(Placement, TakesANumberInLineHeightForTheTopEdge) {
    EXPECT_EQ(top({{"line-height", "33"}}), 33);
    EXPECT_EQ(top({{"line-height", "-33"}}), -33);
}

TEST_F(Placement, TakesTheParentsPlaceWhenNothingIsSaid) {
    parent_ = makeParent(7, 9, 300, 200);
    EXPECT_EQ(placeBox({})->toString(), "id: box, top: 9, left: 7, width: 100, height: 50");
}

TEST_F(Placement, TakesEmptyAttributesForAbsentOnes) {
    parent_ = makeParent(7, 9, 300, 200);
    const Attributes empty = {{"top", ""}, {"left", ""}, {"line-height", ""}, {"text-align", ""}, {"margin", ""}};
    EXPECT_EQ(placeBox(empty)->toString(), "id: box, top: 9, left: 7, width: 100, height: 50");
}

TEST_F(Placement, UsesTheParentsSizeButNotItsPlaceForAlignment) {
    parent_ = makeParent(7, 9, 300, 200);
    EXPECT_EQ(left({{"text-align", "center"}}), 100);
    EXPECT_EQ(left({{"text-align", "right"}}), 200);
    EXPECT_EQ(left({{"text-align", "left"}}), 0);
    EXPECT_EQ(top({{"line-height", "inherit"}}), 75);
}

TEST_F(Placement, InsetsByTheMarginOnTheLeftAndOnTheRight) {
    EXPECT_EQ(left({{"text-align", "left"}, {"margin", "10"}}), 10);
    EXPECT_EQ(left({{"text-align", "left"}, {"margin", "-10"}}), -10);
    EXPECT_EQ(left({{"text-align", "right"}, {"margin", "-10"}}), 1830);
    EXPECT_EQ(left({{"text-align", "center"}, {"margin", "10"}}), 910);
}

TEST_F(Placement, ActsOnAnUnknownAlignmentAsOnNone) {
    parent_ = makeParent(7, 9, 300, 200);
    for (const char* align : {"Center", "middle", " left", "RIGHT", "5"}) {
        EXPECT_EQ(left({{"text-align", align}, {"margin", "10"}}), 7) << align;
    }
}

TEST_F(Placement, HalvesNegativeRoomTowardsZero) {
    parent_ = makeParent(0, 0, 95, 45);
    EXPECT_EQ(left({{"text-align", "center"}}), -2);
    EXPECT_EQ(top({{"line-height", "inherit"}}), -2);
    parent_ = makeParent(0, 0, 99, 49);
    EXPECT_EQ(left({{"text-align", "center"}}), 0);
    EXPECT_EQ(top({{"line-height", "inherit"}}), 0);
}

TEST_F(Placement, MarginThatLeavesNoPlaceIsAnError) {
    EXPECT_EQ(placingError({{"text-align", "right"}, {"margin", "-2147483648"}}), "margin");
    EXPECT_EQ(placingError({{"text-align", "right"}, {"margin", "2147483647"}}), "no exception");
}

TEST_F(Placement, ConvertsTheMarginEvenWhereItIsIrrelevant) {
    EXPECT_EQ(placingError({{"left", "5"}, {"margin", "abc"}}), "stoi");
    EXPECT_EQ(placingError({{"text-align", "center"}, {"margin", "abc"}}), "stoi");
    EXPECT_EQ(placingError({{"margin", "abc"}}), "stoi");
}

TEST_F(Placement, RefusesNumbersThatAreNone) {
    for (const char* name : {"top", "left", "line-height", "margin"}) {
        for (const char* bad : {"abc", " ", "-", "2147483648", "-2147483649", "Inherit"}) {
            EXPECT_EQ(placingError({{name, bad}}), "stoi") << name << "=" << bad;
        }
    }
}

TEST_F(Placement, ReadsNoLineHeightUnderATopAndNoAlignmentUnderALeft) {
    EXPECT_EQ(placingError({{"top", "1"}, {"line-height", "abc"}}), "no exception");
}

TEST_F(Placement, ReadsNumbersUpToTheFirstOtherCharacter) {
    EXPECT_EQ(placeBox({{"top", "12px"}, {"left", " +5;"}})->toString(),
              "id: box, top: 12, left: 5, width: 100, height: 50");
    EXPECT_EQ(left({{"text-align", "left"}, {"margin", "1.9"}}), 1);
}

TEST_F(Placement, GivesTheToolkitsObjectTheRectangle) {
    const auto object = placeBox({{"top", "12"}, {"left", "-5"}});
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object->evas(), &left, &top, &width, &height);
    EXPECT_EQ(left, -5);
    EXPECT_EQ(top, 12);
    EXPECT_EQ(width, 100);
    EXPECT_EQ(height, 50);
    EXPECT_TRUE(evas_object_visible_get(object->evas()));
}

TEST_F(Placement, PlacesANestedItemInItsOwnParent) {
    const ElementPointer outer = makeElement(
        "object", {{"type", "image"}, {"ref", "box"}, {"left", "20"}, {"top", "30"}},
        {makeElement("object", {{"type", "image"}, {"ref", "small"}, {"text-align", "center"}, {"id", "centred"}}),
         makeElement("object", {{"type", "image"}, {"ref", "small"}, {"id", "unplaced"}})});
    layout_.image({{"id", "small"}, {"width", "10"}, {"height", "10"}});
    const auto object = place(outer);
    EXPECT_EQ(object->children()->front()->toString(), "id: centred, top: 30, left: 45, width: 10, height: 10");
    EXPECT_EQ(object->children()->back()->toString(), "id: unplaced, top: 30, left: 20, width: 10, height: 10");
}

TEST_F(Placement, LeavesTheParentsListOfChildrenAlone) {
    placeBox({});
    EXPECT_TRUE(parent_->children()->empty());
}

class ImageItems : public PlacementTest {
protected:
    std::shared_ptr<graphic::Object> placeImage(const Attributes& item) {
        layout_.image(item);
        return place(makeElement("object", {{"type", "image"}, {"ref", "item"}}));
    }
};

TEST_F(ImageItems, OfAnotherTypeThanFileAreFullyTransparentRectangles) {
    for (const char* type : {"png", "", "File", "rectangle"}) {
        toolkit_.calls.clear();
        toolkit_.colours.clear();
        const auto object =
            placeImage({{"id", "item"}, {"type", type}, {"url", "x.png"}, {"width", "30"}, {"height", "20"}});
        EXPECT_EQ(object->width(), 30) << type;
        EXPECT_EQ(object->height(), 20) << type;
        EXPECT_EQ(toolkit_.count("add rectangle"), 1) << type;
        EXPECT_THAT(toolkit_.colours, testing::ElementsAre(Colour{0, 0, 0, 0})) << type;
    }
}

TEST_F(ImageItems, NeedBothSizesAsNumbers) {
    EXPECT_THROW(placeImage({{"id", "item"}}), std::invalid_argument);
    EXPECT_THROW(placeImage({{"id", "item"}, {"width", "1"}}), std::invalid_argument);
    EXPECT_THROW(placeImage({{"id", "item"}, {"width", "1"}, {"height", "high"}}), std::invalid_argument);
    EXPECT_THROW(placeImage({{"id", "item"}, {"width", "1"}, {"height", "9999999999"}}), std::out_of_range);
}

TEST_F(ImageItems, FromFilesHaveTheFilesSizeAndNoOther) {
    writeImage("four.png", Picture(4, 3, 0xFF0000FF));
    layout_.imageBaseDirectory(folder_.path());
    const auto object =
        placeImage({{"id", "item"}, {"type", "file"}, {"url", "four.png"}, {"width", "30"}, {"height", "none"}});
    EXPECT_EQ(object->width(), 4);
    EXPECT_EQ(object->height(), 3);
    EXPECT_EQ(toolkit_.count("add image"), 1);
    EXPECT_TRUE(evas_object_image_filled_get(object->evas()));
    EXPECT_THAT(platform().errors(), testing::IsEmpty());
}

TEST_F(ImageItems, WhoseFileIsMissingAreOnlyLogged) {
    layout_.imageBaseDirectory(folder_.path());
    const auto object = placeImage({{"id", "item"}, {"type", "file"}, {"url", "absent.png"}});
    ASSERT_TRUE(object);
    EXPECT_EQ(object->width(), 0);
    EXPECT_THAT(platform().errors(),
                testing::ElementsAre("There is no image file : " + folder_.path() + "/absent.png"));
}

TEST_F(ImageItems, WithoutUrlNameTheFolderItself) {
    layout_.imageBaseDirectory("/no/such/folder");
    placeImage({{"id", "item"}, {"type", "file"}});
    EXPECT_THAT(platform().errors(), testing::ElementsAre("There is no image file : /no/such/folder/"));
}

TEST_F(ImageItems, WhoseFileIsNoImageAreDrawnAsNothing) {
    folder_.write("broken.png", "no picture");
    layout_.imageBaseDirectory(folder_.path());
    EXPECT_EQ(placeImage({{"id", "item"}, {"type", "file"}, {"url", "broken.png"}})->width(), 0);
    EXPECT_THAT(platform().errors(), testing::IsEmpty());
}

}  // namespace

}  // namespace vaultpad::test
