#include "drawing-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Which references of a layout are checked, and in which order.
class RendererReferences : public DrawingTest {
protected:
    RendererReferences() {
        layout_.imageBaseDirectory("/nowhere")
            .image({{"id", "box"}, {"width", "10"}, {"height", "8"}})
            .string({{"id", "ok"}, {"value", "OK"}})
            .font({{"id", "font"}, {"family", "Noto Sans"}, {"size", "12"}, {"color", "FFFFFF"}});
    }

    std::string errorOf(const Attributes& attributes, const std::vector<ElementPointer>& children = {}) {
        layout_.object(attributes, children);
        const Rendering rendering = render(renderer_, layout_.container());
        EXPECT_TRUE(rendering.result);
        EXPECT_THAT(rendering.deliveries, IsEmpty());
        EXPECT_EQ(rendering.errors.size(), 1u);
        EXPECT_THAT(platform().errors(), ElementsAre("onError"));
        return rendering.errors.empty() ? "" : rendering.errors.front();
    }

    LayoutBuilder layout_;
    graphic::ObjectRenderer renderer_{64, 48};
};

TEST_F(RendererReferences, RefusesATopLevelElementWithoutRef) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"type", "image"}, {"x", "1"}, {"y", "1"}}),
              "Master element's ref attribute is empty.");
}

TEST_F(RendererReferences, RefusesAnEmptyRefWithoutAPlaceToo) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"ref", ""}}), "Master element's ref attribute is empty.");
}

TEST_F(RendererReferences, RefusesAnImageThatDoesNotExist) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"type", "image"}, {"ref", "absent"}}),
              "Can't find master element's reference object.");
}

TEST_F(RendererReferences, LooksForAnImageOnlyAmongTheImages) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"type", "image"}, {"ref", "ok"}}),
              "Can't find master element's reference object.");
}

TEST_F(RendererReferences, RefusesAnImageWithoutABaseDirectory) {
    layout_.imageBaseDirectory("");
    EXPECT_EQ(errorOf({{"id", "a"}, {"type", "image"}, {"ref", "box"}}), "Image's base directory is not find.");
}

TEST_F(RendererReferences, ReportsAMissingImageBeforeAMissingBaseDirectory) {
    layout_.imageBaseDirectory("");
    EXPECT_EQ(errorOf({{"id", "a"}, {"type", "image"}, {"ref", "absent"}}),
              "Can't find master element's reference object.");
}

TEST_F(RendererReferences, RefusesAStringThatDoesNotExist) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"ref", "absent"}, {"font", "font"}}),
              "Can't find master element's reference object.");
}

TEST_F(RendererReferences, LooksForAStringWhateverTheTypeUnlessImage) {
    for (const char* type : {"text", "Image", "image ", "file"}) {
        platform().reset();
        EXPECT_EQ(errorOf({{"id", "a"}, {"type", type}, {"ref", "box"}, {"font", "font"}}),
                  "Can't find master element's reference object.")
            << type;
    }
}

TEST_F(RendererReferences, RefusesATextWithoutAFont) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"ref", "ok"}}), "Master element's font attribute not exists.");
}

TEST_F(RendererReferences, RefusesATextWhoseFontDoesNotExist) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"ref", "ok"}, {"font", "absent"}}), "Font object not exists.");
}

TEST_F(RendererReferences, ReportsAMissingStringBeforeAMissingFont) {
    EXPECT_EQ(errorOf({{"id", "a"}, {"ref", "absent"}}), "Can't find master element's reference object.");
}

TEST_F(RendererReferences, NeedsNoBaseDirectoryForATextAndNoFontForAnImage) {
    layout_.object({{"id", "image"}, {"type", "image"}, {"ref", "box"}, {"x", "1"}, {"y", "1"}});
    EXPECT_EQ(render(renderer_, layout_.container()).deliveries.size(), 1u);
    layout_.imageBaseDirectory("").object({{"id", "text"}, {"ref", "ok"}, {"font", "font"}, {"x", "1"}, {"y", "1"}});
    EXPECT_EQ(render(renderer_, layout_.container()).deliveries.size(), 1u);
}

// Each open level of an element keeps its hold of the lock when an error leaves it, by design.
class RendererNestedReferences : public RendererReferences {
protected:
    std::string nestedErrorOf(const Attributes& attributes);
};

std::string RendererNestedReferences::nestedErrorOf(const Attributes& attributes) {
    const std::string error = errorOf({{"id", "a"}, {"type", "image"}, {"ref", "box"}, {"x", "1"}, {"y", "1"}},
                                      {makeElement("object", attributes)});
    EXPECT_EQ(releaseMainLoop(), 2);
    return error;
}

TEST_F(RendererNestedReferences, ReportsADanglingImage) {
    EXPECT_EQ(nestedErrorOf({{"type", "image"}, {"ref", "absent"}}),
              "Nested element's reference object does not exist.");
}

TEST_F(RendererNestedReferences, ReportsADanglingString) {
    EXPECT_EQ(nestedErrorOf({{"ref", "absent"}, {"font", "font"}}),
              "Nested element's reference object does not exist.");
}

TEST_F(RendererNestedReferences, ReportsADanglingFont) {
    EXPECT_EQ(nestedErrorOf({{"ref", "ok"}, {"font", "absent"}}), "Nested element's font object does not exist.");
}

TEST_F(RendererNestedReferences, ReportsMissingReferences) {
    EXPECT_EQ(nestedErrorOf({}), "Nested element's reference object does not exist.");
}

}  // namespace

}  // namespace vaultpad::test
