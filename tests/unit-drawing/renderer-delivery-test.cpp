#include <Ecore.h>
#include <vaultpad-platform/dlog.h>

#include <stdexcept>
#include <thread>

#include "drawing-fixture.h"
#include "exception.h"

namespace vaultpad::test {

namespace {

using graphic::Canvas;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kWidth = 64;
constexpr int kHeight = 48;

// Layouts of transparent rectangles: what is delivered matters here, not what it looks like.
class RendererDelivery : public DrawingTest {
protected:
    RendererDelivery() {
        layout_.imageBaseDirectory("/nowhere").image({{"id", "box"}, {"width", "10"}, {"height", "8"}});
    }

    void addBox(const std::string& id, const std::string& x, const std::string& y) {
        layout_.object({{"id", id}, {"type", "image"}, {"ref", "box"}, {"x", x}, {"y", y}});
    }

    ElementPointer element(const std::string& id) { return layout_.container()->object(id); }

    Rendering render() { return test::render(renderer_, layout_.container()); }

    LayoutBuilder layout_;
    graphic::ObjectRenderer renderer_{kWidth, kHeight};
};

TEST_F(RendererDelivery, LogsZeroObjectsAndCallsNobodyForAnEmptyMap) {
    const Rendering rendering = render();
    EXPECT_TRUE(rendering.result);
    EXPECT_THAT(rendering.deliveries, IsEmpty());
    EXPECT_THAT(rendering.errors, IsEmpty());
    EXPECT_THAT(platform().infos(), ElementsAre("called;", "number of objects : 0"));
}

TEST_F(RendererDelivery, LogsTheSizeOfTheWholeMap) {
    addBox("a", "1", "2");
    addBox("b", "", "");
    layout_.container()->object("absent");
    render();
    EXPECT_THAT(platform().infos(), Contains("number of objects : 3"));
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(RendererDelivery, DeliversOneObjectPerCanvasInTheRenderersOneBuffer) {
    addBox("a", "1", "2");
    addBox("b", "3", "4");
    const Rendering rendering = render();
    EXPECT_TRUE(rendering.result);
    ASSERT_EQ(rendering.deliveries.size(), 2u);
    for (const Delivery& delivery : rendering.deliveries) {
        EXPECT_EQ(delivery.objects, 1);
        EXPECT_NE(delivery.buffer, nullptr);
        EXPECT_EQ(delivery.buffer, rendering.deliveries[0].buffer);
        EXPECT_EQ(delivery.whole.width, kWidth);
        EXPECT_EQ(delivery.whole.height, kHeight);
    }
    std::vector<std::string> ids = {rendering.deliveries[0].object->id(), rendering.deliveries[1].object->id()};
    EXPECT_THAT(ids, testing::UnorderedElementsAre("a", "b"));
    EXPECT_TRUE(element("a")->mark);
    EXPECT_TRUE(element("b")->mark);
}

TEST_F(RendererDelivery, UsesTheSameBufferInEveryCall) {
    addBox("a", "1", "2");
    const Delivery first = renderOne(renderer_, layout_.container());
    addBox("b", "1", "2");
    EXPECT_EQ(renderOne(renderer_, layout_.container()).buffer, first.buffer);
}

TEST_F(RendererDelivery, GivesTheObjectItsScreenPosition) {
    addBox("a", "-12", "340");
    const Delivery delivery = renderOne(renderer_, layout_.container());
    EXPECT_EQ(delivery.object->x(), -12);
    EXPECT_EQ(delivery.object->y(), 340);
    EXPECT_EQ(delivery.object->toString(), "id: a, top: 0, left: 0, width: 10, height: 8");
}

TEST_F(RendererDelivery, TakesObjectsInTheMapsOwnOrder) {
    std::vector<std::string> expected;
    for (const char* id : {"z", "a", "m", "1", "key.5.normal", "key.5.focus"}) {
        addBox(id, "0", "0");
    }
    for (const auto& entry : *layout_.container()->objects()) {
        expected.push_back(entry.first);
    }
    std::vector<std::string> delivered;
    for (const Delivery& delivery : render().deliveries) {
        delivered.push_back(delivery.object->id());
    }
    EXPECT_EQ(delivered, expected);
}

TEST_F(RendererDelivery, KeepsAnObjectWithoutBothCoordinatesToItself) {
    addBox("no-y", "1", "");
    addBox("no-x", "", "1");
    layout_.object({{"id", "neither"}, {"type", "image"}, {"ref", "box"}});
    const Rendering rendering = render();
    EXPECT_TRUE(rendering.result);
    EXPECT_THAT(rendering.deliveries, IsEmpty());
    EXPECT_THAT(rendering.errors, IsEmpty());
    for (const char* id : {"no-y", "no-x", "neither"}) {
        EXPECT_FALSE(element(id)->mark) << id;
    }
}

TEST_F(RendererDelivery, ReadsNoCoordinateThatStandsAlone) {
    addBox("a", "abc", "");
    EXPECT_THAT(render().errors, IsEmpty());
}

TEST_F(RendererDelivery, SkipsWhatAnEarlierCallDelivered) {
    addBox("a", "1", "2");
    addBox("unplaced", "1", "");
    EXPECT_EQ(render().deliveries.size(), 1u);
    addBox("b", "3", "4");
    const Delivery delivery = renderOne(renderer_, layout_.container());
    EXPECT_EQ(delivery.object->id(), "b");
    EXPECT_THAT(render().deliveries, IsEmpty());
    element("unplaced")->attribute("y", "5");
    EXPECT_EQ(renderOne(renderer_, layout_.container()).object->id(), "unplaced");
}

TEST_F(RendererDelivery, SkipsAMarkedElementEvenWhenItsReferencesAreUnusable) {
    layout_.object({{"id", "broken"}});
    element("broken")->mark = true;
    EXPECT_THAT(render().errors, IsEmpty());
}

TEST_F(RendererDelivery, DrawsAgainWhoseMarkIsTakenBack) {
    addBox("a", "1", "2");
    render();
    element("a")->mark = false;
    EXPECT_EQ(render().deliveries.size(), 1u);
}

TEST_F(RendererDelivery, SkipsEntriesThatFailedLookupsLeft) {
    addBox("a", "1", "2");
    EXPECT_EQ(element("absent"), nullptr);
    EXPECT_EQ(renderOne(renderer_, layout_.container()).object->id(), "a");
}

TEST_F(RendererDelivery, ReportsAnUnreadableCoordinateAndDoesNotDeliver) {
    for (const char* bad : {"abc", "-", " ", "99999999999", "-99999999999", "x12"}) {
        for (const bool badX : {true, false}) {
            addBox("a", badX ? bad : "1", badX ? "1" : bad);
            const Rendering rendering = render();
            EXPECT_TRUE(rendering.result);
            EXPECT_THAT(rendering.errors, ElementsAre("stoi")) << bad;
            EXPECT_THAT(rendering.deliveries, IsEmpty()) << bad;
            EXPECT_FALSE(element("a")->mark) << bad;
            EXPECT_EQ(mainLoopDepth(), 0) << bad;
        }
    }
}

TEST_F(RendererDelivery, ReadsCoordinatesAsFarAsTheyAreNumbers) {
    const std::pair<const char*, int> kCases[] = {{"12px", 12}, {" \t7", 7},  {"+4", 4},
                                                  {"0x10", 0},  {"1.9", 1},   {"007", 7},
                                                  {"-0", 0},    {"1 000", 1}, {"2147483647", 2147483647}};
    for (const auto& [text, value] : kCases) {
        addBox("a", text, text);
        const Delivery delivery = renderOne(renderer_, layout_.container());
        ASSERT_TRUE(delivery.object) << text;
        EXPECT_EQ(delivery.object->x(), value) << text;
        EXPECT_EQ(delivery.object->y(), value) << text;
    }
}

// The order of the map is not the test's to choose, so the second object in it is spoilt.
TEST_F(RendererDelivery, StopsAtAnErrorAndKeepsTheMarksOfWhatWasDelivered) {
    for (const char* id : {"a", "b", "c"}) {
        addBox(id, "1", "1");
    }
    std::vector<ElementPointer> elements;
    for (const auto& entry : *layout_.container()->objects()) {
        elements.push_back(entry.second);
    }
    elements[1]->attribute("x", "abc");
    const Rendering rendering = render();
    EXPECT_TRUE(rendering.result);
    EXPECT_THAT(rendering.errors, ElementsAre("stoi"));
    ASSERT_EQ(rendering.deliveries.size(), 1u);
    EXPECT_EQ(rendering.deliveries[0].object->id(), elements[0]->attribute("id"));
    EXPECT_TRUE(elements[0]->mark);
    EXPECT_FALSE(elements[1]->mark);
    EXPECT_FALSE(elements[2]->mark);
    EXPECT_THAT(platform().errors(), ElementsAre("onError"));

    elements[1]->attribute("x", "1");
    EXPECT_EQ(render().deliveries.size(), 2u);
}

TEST_F(RendererDelivery, ReportsAnEmptyCanvasCallbackOnceThereIsSomethingToDeliver) {
    std::vector<std::string> errors;
    const auto onError = [&errors](const std::string& text) { errors.push_back(text); };
    addBox("unplaced", "", "");
    EXPECT_TRUE(renderer_.render(layout_.container(), nullptr, onError));
    EXPECT_THAT(errors, IsEmpty());
    addBox("a", "1", "1");
    EXPECT_TRUE(renderer_.render(layout_.container(), nullptr, onError));
    EXPECT_THAT(errors, ElementsAre(std::bad_function_call().what()));
    EXPECT_FALSE(element("a")->mark);
    EXPECT_EQ(mainLoopDepth(), 0);
}

TEST_F(RendererDelivery, ReportsWhatTheCanvasCallbackThrows) {
    addBox("a", "1", "1");
    std::vector<std::string> errors;
    EXPECT_TRUE(renderer_.render(
        layout_.container(), [](Canvas&) { throw std::runtime_error("upload refused"); },
        [&errors](const std::string& text) { errors.push_back(text); }));
    EXPECT_THAT(errors, ElementsAre("upload refused"));
    EXPECT_FALSE(element("a")->mark);
    EXPECT_EQ(mainLoopDepth(), 0);
}

TEST_F(RendererDelivery, PassesOnWhatTheErrorCallbackThrows) {
    addBox("a", "abc", "1");
    const auto nothing = [](Canvas&) {};
    EXPECT_THROW(renderer_.render(layout_.container(), nothing,
                                  [](const std::string&) { throw std::logic_error("no one listens"); }),
                 std::logic_error);
    EXPECT_THROW(renderer_.render(layout_.container(), nothing, nullptr), std::bad_function_call);
    releaseMainLoop();
}

TEST_F(RendererDelivery, HoldsTheMainLoopLockWhileItDelivers) {
    addBox("a", "1", "1");
    EXPECT_EQ(renderOne(renderer_, layout_.container()).mainLoopDepth, 1);
    EXPECT_EQ(mainLoopDepth(), 0);
}

TEST_F(RendererDelivery, DeliversTheTreeOfNestedItemsInDocumentOrder) {
    const Attributes nested = {{"type", "image"}, {"ref", "box"}};
    const auto item = [&nested](const std::string& id, const std::vector<ElementPointer>& children = {}) {
        Attributes attributes = nested;
        attributes.push_back({"id", id});
        return makeElement("object", attributes, children);
    };
    layout_.object({{"id", "top"}, {"type", "image"}, {"ref", "box"}, {"x", "0"}, {"y", "0"}},
                   {item("first", {item("deep")}), item("second")});
    const auto object = renderOne(renderer_, layout_.container()).object;
    ASSERT_EQ(object->children()->size(), 2u);
    EXPECT_EQ(object->children()->front()->id(), "first");
    EXPECT_EQ(object->children()->front()->children()->front()->id(), "deep");
    EXPECT_EQ(object->children()->back()->id(), "second");
    EXPECT_FALSE(element("top")->children()->front()->mark);
}

TEST_F(RendererDelivery, IgnoresCoordinatesOfNestedItems) {
    layout_.object({{"id", "top"}, {"type", "image"}, {"ref", "box"}, {"x", "0"}, {"y", "0"}},
                   {makeElement("object", {{"type", "image"}, {"ref", "box"}, {"x", "abc"}, {"y", "abc"}})});
    EXPECT_THAT(render().errors, IsEmpty());
}

TEST_F(RendererDelivery, TakesTheSecureDisplaysSizeByDefault) {
    graphic::ObjectRenderer renderer;
    addBox("a", "1", "1");
    const Delivery delivery = renderOne(renderer, layout_.container());
    EXPECT_EQ(delivery.whole.width, 1920);
    EXPECT_EQ(delivery.whole.height, 1080);
}

TEST_F(RendererDelivery, InitialisesOnceAndLogsEveryCall) {
    renderer_.lazyInit();
    renderer_.lazyInit();
    addBox("a", "1", "1");
    const Delivery first = renderOne(renderer_, layout_.container());
    renderer_.lazyInit();
    element("a")->mark = false;
    EXPECT_EQ(renderOne(renderer_, layout_.container()).buffer, first.buffer);
    EXPECT_THAT(platform().infos(), testing::Contains("called;").Times(3));
}

TEST_F(RendererDelivery, MayBeCalledByAnotherThreadWhileTheMainLoopRuns) {
    addBox("a", "1", "2");
    Rendering rendering;
    std::thread drawer([this, &rendering] {
        rendering = render();
        ecore_main_loop_thread_safe_call_async([](void*) { ecore_main_loop_quit(); }, nullptr);
    });
    ecore_main_loop_begin();
    drawer.join();
    EXPECT_EQ(rendering.deliveries.size(), 1u);
    EXPECT_THAT(rendering.errors, IsEmpty());
}

}  // namespace

}  // namespace vaultpad::test
