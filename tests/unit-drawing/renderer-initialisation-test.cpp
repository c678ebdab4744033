#include <Ecore.h>

#include "drawing-fixture.h"
#include "exception.h"
#include "toolkit-recorder.h"

namespace vaultpad::test {

namespace {

using exception::Exception;
using graphic::ObjectRenderer;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kWidth = 40;
constexpr int kHeight = 30;

class RendererInitialisation : public DrawingTest {
protected:
    RendererInitialisation() { toolkit_.pixelBytes = kWidth * kHeight * 4; }

    static std::shared_ptr<context::ElementContainer> oneBox() {
        return LayoutBuilder()
            .imageBaseDirectory("/nowhere")
            .image({{"id", "box"}, {"width", "10"}, {"height", "8"}})
            .object({{"id", "a"}, {"type", "image"}, {"ref", "box"}, {"x", "1"}, {"y", "1"}})
            .container();
    }

    static std::string errorOfLazyInit(ObjectRenderer& renderer) {
        try {
            renderer.lazyInit();
        } catch (const Exception& error) {
            return error.what();
        }
        return "no exception";
    }

    ToolkitRecorder toolkit_;
};

TEST_F(RendererInitialisation, MakesCanvasAndPixelsUnderTheMainLoopLock) {
    ObjectRenderer renderer(kWidth, kHeight);
    renderer.lazyInit();
    EXPECT_THAT(toolkit_.calls,
                ElementsAre("lock", "evas_init", "evas_render_method_lookup buffer", "evas_new", "evas_engine_info_get",
                            "malloc of the pixels", "evas_engine_info_set", "unlock"));
    ASSERT_EQ(toolkit_.outputSizes.size(), 1u);
    EXPECT_EQ(toolkit_.outputSizes[0].width, kWidth);
    EXPECT_EQ(toolkit_.outputSizes[0].height, kHeight);
}

TEST_F(RendererInitialisation, TellsTheEngineAboutThePixels) {
    ObjectRenderer renderer(kWidth, kHeight);
    renderer.lazyInit();
    ASSERT_TRUE(toolkit_.engineInfo);
    EXPECT_EQ(toolkit_.engineInfo->depth_type, EVAS_ENGINE_BUFFER_DEPTH_ARGB32);
    EXPECT_EQ(toolkit_.engineInfo->dest_buffer, toolkit_.pixels);
    EXPECT_EQ(toolkit_.engineInfo->dest_buffer_row_bytes, kWidth * 4);
    EXPECT_EQ(toolkit_.engineInfo->use_color_key, 0);
    EXPECT_EQ(toolkit_.engineInfo->alpha_threshold, 0);
    EXPECT_EQ(toolkit_.engineInfo->func.new_update_region, nullptr);
    EXPECT_EQ(toolkit_.engineInfo->func.free_update_region, nullptr);
}

TEST_F(RendererInitialisation, LetsTheEngineGoOnWithTheSamePixels) {
    ObjectRenderer renderer(kWidth, kHeight);
    renderer.lazyInit();
    ASSERT_TRUE(toolkit_.engineInfo);
    ASSERT_NE(toolkit_.engineInfo->func.switch_buffer, nullptr);
    EXPECT_EQ(toolkit_.engineInfo->func.switch_buffer(nullptr, toolkit_.pixels), toolkit_.pixels);
}

void* theEnginesOwn(void*, void* pixels) {
    return pixels;
}

TEST_F(RendererInitialisation, LeavesABufferSwitchOfTheEnginesOwn) {
    toolkit_.switchBuffer = theEnginesOwn;
    ObjectRenderer renderer(kWidth, kHeight);
    renderer.lazyInit();
    ASSERT_TRUE(toolkit_.engineInfo);
    EXPECT_EQ(toolkit_.engineInfo->func.switch_buffer, theEnginesOwn);
}

TEST_F(RendererInitialisation, HandsOutThePixelsThatItAllocated) {
    ObjectRenderer renderer(kWidth, kHeight);
    EXPECT_EQ(renderOne(renderer, oneBox()).buffer, toolkit_.pixels);
}

TEST_F(RendererInitialisation, IsDoneOnce) {
    ObjectRenderer renderer(kWidth, kHeight);
    renderer.lazyInit();
    toolkit_.calls.clear();
    renderer.lazyInit();
    EXPECT_THAT(toolkit_.calls, IsEmpty());
}

TEST_F(RendererInitialisation, IsUndoneByTheDestructor) {
    {
        ObjectRenderer renderer(kWidth, kHeight);
        renderer.lazyInit();
        toolkit_.calls.clear();
    }
    EXPECT_THAT(toolkit_.calls, ElementsAre("free of the pixels", "lock", "evas_free", "evas_shutdown", "unlock"));
}

TEST_F(RendererInitialisation, NeedsNoUndoingWhenItNeverHappened) {
    { const ObjectRenderer renderer(kWidth, kHeight); }
    EXPECT_THAT(toolkit_.calls, IsEmpty());
}

struct FailureCase {
    const char* name;
    Failure failure;
    const char* message;
    std::vector<std::string> calls;
};

void PrintTo(const FailureCase& failure, std::ostream* stream) {
    *stream << failure.name;
}

class RendererInitialisationFailure : public RendererInitialisation, public testing::WithParamInterface<FailureCase> {
protected:
    RendererInitialisationFailure() { toolkit_.failure = GetParam().failure; }
};

TEST_P(RendererInitialisationFailure, IsThrownAfterTheLockIsLeftAndNothingStays) {
    ObjectRenderer renderer(kWidth, kHeight);
    EXPECT_EQ(errorOfLazyInit(renderer), GetParam().message);
    EXPECT_EQ(toolkit_.calls, GetParam().calls);
    EXPECT_EQ(mainLoopDepth(), 0);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_P(RendererInitialisationFailure, LeavesNothingToTheDestructor) {
    {
        ObjectRenderer renderer(kWidth, kHeight);
        EXPECT_EQ(errorOfLazyInit(renderer), GetParam().message);
        toolkit_.calls.clear();
    }
    EXPECT_THAT(toolkit_.calls, IsEmpty());
}

TEST_P(RendererInitialisationFailure, ComesOutOfRenderBeforeAnyCallback) {
    ObjectRenderer renderer(kWidth, kHeight);
    int callbacks = 0;
    try {
        renderer.render(
            oneBox(), [&callbacks](graphic::Canvas&) { ++callbacks; },
            [&callbacks](const std::string&) { ++callbacks; });
        ADD_FAILURE() << "no exception";
    } catch (const Exception& error) {
        EXPECT_STREQ(error.what(), GetParam().message);
    }
    EXPECT_EQ(callbacks, 0);
    EXPECT_EQ(mainLoopDepth(), 0);
}

TEST_P(RendererInitialisationFailure, IsTriedAgainByTheNextCall) {
    ObjectRenderer renderer(kWidth, kHeight);
    EXPECT_EQ(errorOfLazyInit(renderer), GetParam().message);
    EXPECT_EQ(errorOfLazyInit(renderer), GetParam().message);
    toolkit_.failure = Failure::None;
    EXPECT_EQ(renderOne(renderer, oneBox()).object->id(), "a");
    EXPECT_EQ(toolkit_.count("evas_init"), 3);
}

INSTANTIATE_TEST_SUITE_P(
    Renderer, RendererInitialisationFailure,
    testing::Values(FailureCase{"NoEngine",
                                Failure::MethodLookup,
                                "ERROR: evas was not compiled with 'buffer' engine!",
                                {"lock", "evas_init", "evas_render_method_lookup buffer", "unlock"}},
                    FailureCase{"NoCanvas",
                                Failure::Canvas,
                                "ERROR: could not instantiate new evas canvas_.",
                                {"lock", "evas_init", "evas_render_method_lookup buffer", "evas_new", "unlock"}},
                    FailureCase{"NoEngineInfo",
                                Failure::EngineInfo,
                                "ERROR: could not get evas engine info!",
                                {"lock", "evas_init", "evas_render_method_lookup buffer", "evas_new",
                                 "evas_engine_info_get", "evas_free", "unlock"}},
                    FailureCase{"NoPixels",
                                Failure::Pixels,
                                "ERROR: could not allocate canvas_ pixels!",
                                {"lock", "evas_init", "evas_render_method_lookup buffer", "evas_new",
                                 "evas_engine_info_get", "malloc of the pixels", "evas_free", "unlock"}}),
    [](const auto& instance) { return instance.param.name; });

}  // namespace

}  // namespace vaultpad::test
