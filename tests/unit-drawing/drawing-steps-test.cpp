#include <Ecore.h>

#include "drawing-fixture.h"
#include "toolkit-recorder.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

// The order in which the renderer uses the toolkit.
class DrawingSteps : public DrawingTest {
protected:
    DrawingSteps() {
        layout_.imageBaseDirectory("/nowhere").image({{"id", "box"}, {"width", "10"}, {"height", "8"}});
        renderer_.lazyInit();
        toolkit_.calls.clear();
    }

    static ElementPointer box(const std::string& id, const std::vector<ElementPointer>& children = {}) {
        return makeElement("object", {{"id", id}, {"type", "image"}, {"ref", "box"}}, children);
    }

    void addTop(const Attributes& place, const std::vector<ElementPointer>& children = {}) {
        Attributes attributes = {{"id", "top"}, {"type", "image"}, {"ref", "box"}};
        attributes.insert(attributes.end(), place.begin(), place.end());
        layout_.object(attributes, children);
    }

    bool render() {
        return renderer_.render(
            layout_.container(), [this](graphic::Canvas&) { toolkit_.call("onCanvas"); },
            [this](const std::string& text) { toolkit_.call("onError " + text); });
    }

    LayoutBuilder layout_;
    ToolkitRecorder toolkit_;
    graphic::ObjectRenderer renderer_{64, 48};
};

const Attributes kPlaced = {{"x", "1"}, {"y", "2"}};

TEST_F(DrawingSteps, RenderThenFreeTheUpdatesThenDeliverThenErase) {
    addTop(kPlaced);
    EXPECT_TRUE(render());
    EXPECT_THAT(toolkit_.calls, ElementsAre("lock", "lock", "add rectangle", "unlock", "evas_render_updates",
                                            "evas_render_updates_free", "onCanvas", "call on the main loop",
                                            "evas_object_del", "unlock"));
}

TEST_F(DrawingSteps, AreTheSameWithoutDeliveryForAnObjectWithoutAPlace) {
    addTop({});
    EXPECT_TRUE(render());
    EXPECT_THAT(toolkit_.calls,
                ElementsAre("lock", "lock", "add rectangle", "unlock", "evas_render_updates",
                            "evas_render_updates_free", "call on the main loop", "evas_object_del", "unlock"));
}

TEST_F(DrawingSteps, TakeTheLockAgainForEachLevel) {
    addTop(kPlaced, {box("a", {box("b")}), box("c")});
    EXPECT_TRUE(render());
    toolkit_.calls.resize(toolkit_.calls.size() < 13 ? toolkit_.calls.size() : 13);
    EXPECT_THAT(toolkit_.calls,
                ElementsAre("lock", "lock", "add rectangle", "lock", "add rectangle", "lock", "add rectangle", "unlock",
                            "unlock", "lock", "add rectangle", "unlock", "unlock"));
}

TEST_F(DrawingSteps, EraseChildrenBeforeTheirParentInDocumentOrder) {
    addTop(kPlaced, {box("a", {box("b")}), box("c")});
    EXPECT_TRUE(render());
    ASSERT_EQ(toolkit_.added.size(), 4u);
    const std::vector<Eo*>& added = toolkit_.added;  // top, a, b, c
    EXPECT_THAT(toolkit_.deleted, ElementsAre(added[2], added[1], added[3], added[0]));
    EXPECT_EQ(toolkit_.count("call on the main loop"), 4);
}

TEST_F(DrawingSteps, EraseAnObjectBeforeTheNextIsDrawn) {
    addTop(kPlaced);
    layout_.object({{"id", "other"}, {"type", "image"}, {"ref", "box"}, {"x", "1"}, {"y", "2"}});
    EXPECT_TRUE(render());
    const auto firstDeletion = std::find(toolkit_.calls.begin(), toolkit_.calls.end(), "evas_object_del");
    EXPECT_EQ(std::count(toolkit_.calls.begin(), firstDeletion, "add rectangle"), 1);
    EXPECT_EQ(toolkit_.count("evas_object_del"), 2);
}

TEST_F(DrawingSteps, StopAtAReferenceErrorBeforeAnythingIsDrawn) {
    layout_.object({{"id", "broken"}});
    EXPECT_TRUE(render());
    EXPECT_THAT(toolkit_.calls, ElementsAre("lock", "onError Master element's ref attribute is empty.", "unlock"));
}

TEST_F(DrawingSteps, FreeTheUpdatesAndEraseNothingAfterAnUnreadablePlace) {
    addTop({{"x", "abc"}, {"y", "1"}});
    EXPECT_TRUE(render());
    EXPECT_EQ(toolkit_.count("evas_render_updates_free"), 1);
    EXPECT_EQ(toolkit_.count("onCanvas"), 0);
    EXPECT_THAT(toolkit_.deleted, IsEmpty());
    EXPECT_EQ(toolkit_.calls.back(), "unlock");
}

TEST_F(DrawingSteps, LeaveTheLocksOfTheOpenLevelsHeldAfterAnErrorInsideAnElement) {
    addTop(kPlaced, {box("a", {makeElement("object", {{"type", "image"}, {"ref", "box"}, {"top", "abc"}})})});
    EXPECT_TRUE(render());
    EXPECT_EQ(toolkit_.count("onError stoi"), 1);
    EXPECT_THAT(toolkit_.deleted, IsEmpty());
    EXPECT_EQ(toolkit_.count("evas_render_updates"), 0);
    EXPECT_EQ(releaseMainLoop(), 3);
}

TEST_F(DrawingSteps, OfOnEraseLeaveTheObjectsAsTheyAre) {
    const auto parent = std::make_shared<graphic::Object>();
    parent->width(64);
    parent->height(48);
    addTop({}, {box("a")});
    const auto object = renderer_.onRender(layout_.container()->object("top"), parent, layout_.container());
    EXPECT_TRUE(parent->children()->empty());
    Eo* const handle = object->evas();
    renderer_.onErase(object);
    EXPECT_EQ(object->evas(), handle);
    EXPECT_EQ(object->children()->size(), 1u);
    EXPECT_THAT(toolkit_.deleted, ElementsAre(toolkit_.added[1], toolkit_.added[0]));
}

}  // namespace

}  // namespace vaultpad::test
