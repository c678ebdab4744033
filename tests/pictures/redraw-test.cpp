/* The renderer redraws what has changed, and its pictures are those of a full redraw. */
#include <Evas.h>
#include <Evas_Engine_Buffer.h>

#include <algorithm>
#include <filesystem>

#include "context/application-context-parser.h"
#include "drawing-fixture.h"
#include "layout-texts.h"

namespace vaultpad::test {

namespace {

// The canvas of the shipped library.
constexpr int kWidth = 1920;
constexpr int kHeight = 1080;

// The engine draws its first pictures in full, for want of one that it could go on with.
constexpr std::size_t kFullPasses = 2;

enum class Redraw { Changes, Everything };
Redraw redraw = Redraw::Changes;

struct Drawing {
    std::vector<Picture> images;
    Picture lastCanvas;
};

// Draws a layout in a new renderer.
Drawing drawAll(const std::shared_ptr<context::ElementContainer>& container, Redraw mode) {
    redraw = mode;
    graphic::ObjectRenderer renderer(kWidth, kHeight);
    Drawing drawing;
    unsigned int* pixels = nullptr;
    renderer.render(
        container,
        [&](graphic::Canvas& canvas) {
            const auto object = canvas.object(0);
            drawing.images.push_back(cutOut(canvas.buffer(), canvas.width(), object->width(), object->height()));
            pixels = canvas.buffer();
        },
        [](const std::string& error) { ADD_FAILURE() << error; });
    if (pixels != nullptr) {
        drawing.lastCanvas = cutOut(pixels, kWidth, kWidth, kHeight);
    }
    return drawing;
}

class Layout : public testing::TestWithParam<LayoutChoice> {
protected:
    static context::ApplicationContextParser parserOf(const LayoutChoice& choice) {
        platform().television.applicationRoot = VAULTPAD_APPLICATION_ROOT;
        context::ApplicationContextParser parser;
        parser.setMode(choice.focusZoom, choice.highContrast, choice.type, choice.reverse, choice.orientation);
        return parser;
    }

public:
    static std::string nameOf(const testing::TestParamInfo<LayoutChoice>& info) {
        std::string name = std::filesystem::path(parserOf(info.param).path()).stem();
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    }
};

TEST_P(Layout, HasThePixelsOfAFullRedraw) {
    context::ApplicationContextParser parser = parserOf(GetParam());
    const Drawing changes = drawAll(parser.parse(), Redraw::Changes);
    const Drawing everything = drawAll(parser.parse(), Redraw::Everything);
    ASSERT_GT(changes.images.size(), kFullPasses);
    ASSERT_EQ(changes.images.size(), everything.images.size());
    for (std::size_t i = 0; i < changes.images.size(); ++i) {
        EXPECT_EQ(changes.images[i].pixels, everything.images[i].pixels) << "image " << i;
    }
    EXPECT_EQ(changes.lastCanvas.pixels, everything.lastCanvas.pixels);
}

INSTANTIATE_TEST_SUITE_P(Of, Layout, testing::ValuesIn(allLayouts()), Layout::nameOf);

class Scene : public DrawingTest {
protected:
    static constexpr int kSceneWidth = 400;
    static constexpr int kSceneHeight = 300;
    static constexpr int kObjects = 12;

    /* Small and large objects in turn, so that each has to clear what the last one left. */
    std::shared_ptr<context::ElementContainer> scene() {
        LayoutBuilder layout;
        layout.imageBaseDirectory(folder_.path())
            .string({{"id", "text"}, {"value", "Wq8"}})
            .font({{"id", "font"}, {"family", "Noto Sans"}, {"size", "30"}, {"color", "FFC040"}});
        for (int i = 0; i < kObjects; ++i) {
            const std::string id = "o" + std::to_string(i);
            Picture bitmap(30 + 170 * (i % 3) / 2, 20 + 120 * (i % 2), 0x80402010u + static_cast<unsigned>(i));
            bitmap.fill(3, 3, 10, 10, 0xFF2060A0);
            writeImage(id + ".png", bitmap);
            layout.image({{"id", id}, {"type", "file"}, {"url", id + ".png"}})
                .object({{"id", id}, {"type", "image"}, {"ref", id}, {"x", "0"}, {"y", "0"}},
                        {makeElement("object", {{"ref", "text"}, {"font", "font"}, {"text-align", "center"}})});
        }
        return layout.container();
    }

    Rendering draw(Redraw mode) {
        redraw = mode;
        graphic::ObjectRenderer renderer(kSceneWidth, kSceneHeight);
        return render(renderer, scene());
    }
};

TEST_F(Scene, HasTheWholeCanvasOfAFullRedrawAfterEveryPass) {
    const Rendering changes = draw(Redraw::Changes);
    const Rendering everything = draw(Redraw::Everything);
    ASSERT_EQ(changes.deliveries.size(), static_cast<std::size_t>(kObjects));
    ASSERT_EQ(everything.deliveries.size(), changes.deliveries.size());
    for (std::size_t i = 0; i < changes.deliveries.size(); ++i) {
        EXPECT_EQ(changes.deliveries[i].whole.pixels, everything.deliveries[i].whole.pixels) << "pass " << i;
    }
}

/* How many passes left alone what a client wrote into the canvas' last pixel, which no object reaches. */
std::size_t untouchedPasses(const std::shared_ptr<context::ElementContainer>& container, Redraw mode, int width,
                            int height) {
    constexpr unsigned int kMark = 0xCAFEF00D;
    redraw = mode;
    std::size_t untouched = 0;
    graphic::ObjectRenderer renderer(width, height);
    renderer.render(
        container,
        [&](graphic::Canvas& canvas) {
            unsigned int& last = canvas.buffer()[canvas.width() * canvas.height() - 1];
            untouched += last == kMark ? 1 : 0;
            last = kMark;
        },
        [](const std::string& error) { ADD_FAILURE() << error; });
    return untouched;
}

TEST_F(Scene, IsNotDrawnWhereNothingChanges) {
    EXPECT_EQ(untouchedPasses(scene(), Redraw::Changes, kSceneWidth, kSceneHeight), kObjects - kFullPasses);
    EXPECT_EQ(untouchedPasses(scene(), Redraw::Everything, kSceneWidth, kSceneHeight), 0u);
}

}  // namespace

}  // namespace vaultpad::test

// The linker puts this between the renderer and the toolkit (--wrap). Without the hook the engine redraws everything.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
#pragma GCC visibility push(default)
extern "C" {

Eina_Bool __real_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info);
Eina_Bool __wrap_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info) {
    if (vaultpad::test::redraw == vaultpad::test::Redraw::Everything) {
        reinterpret_cast<Evas_Engine_Info_Buffer*>(info)->info.func.switch_buffer = nullptr;
    }
    return __real_evas_engine_info_set(canvas, info);
}
}
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier)
