#include "layout-texts.h"

#include <Evas.h>

#include <filesystem>

#include "context/application-context-parser.h"
#include "drawing-fixture.h"

namespace vaultpad::test {

namespace {

constexpr int kVertical = 1;
constexpr int kKeyboard = 2;

// Wide enough for every object but the panel, which carries no text.
constexpr int kCanvasWidth = 800;
constexpr int kCanvasHeight = 200;

// A layout's objects whose nested element is a text, by their ids.
class TextObjects {
public:
    TextObjects(std::shared_ptr<context::ElementContainer> container, Texts texts) : container_(std::move(container)) {
        const auto objects = container_->objects();
        for (auto object = objects->begin(); object != objects->end();) {
            object = isWanted(object->second, texts) ? std::next(object) : objects->erase(object);
        }
    }

    std::shared_ptr<context::Element> textOf(const std::string& id) const {
        return container_->object(id)->children()->front();
    }

private:
    bool isWanted(const std::shared_ptr<context::Element>& object, Texts texts) const {
        if (object->children()->empty() || object->children()->front()->attribute("type") == "image") {
            return false;
        }
        const auto string = container_->string(object->children()->front()->attribute("ref"));
        return texts == Texts::All || string->attribute("i18n") == "true";
    }

    std::shared_ptr<context::ElementContainer> container_;
};

DrawnText drawnText(graphic::Canvas& canvas, const TextObjects& objects, context::ElementContainer& container) {
    const auto parent = canvas.object(0);
    const auto child = parent->children()->front();
    const std::string fontId = objects.textOf(parent->id())->attribute("font");
    const auto font = container.font(fontId);
    const char* family = nullptr;
    DrawnText drawn;
    drawn.object = parent->id();
    drawn.text = evas_object_text_text_get(child->evas());
    drawn.role = fontId.substr(0, fontId.find("-on-"));
    evas_object_text_font_get(child->evas(), &family, &drawn.size);
    drawn.family = family;
    drawn.wantedSize = std::stoi(font->attribute("size"));
    drawn.left = child->left();
    drawn.width = child->width();
    drawn.parentWidth = parent->width();
    drawn.image = cutOut(canvas.buffer(), canvas.width(), parent->width(), parent->height());
    return drawn;
}

}  // namespace

std::vector<LayoutChoice> allLayouts() {
    std::vector<LayoutChoice> layouts;
    for (const int type : {1, kKeyboard}) {
        for (const int orientation : {0, kVertical}) {
            for (const int reverse : {0, 1}) {
                for (const int zoom : {0, 1}) {
                    layouts.push_back({zoom, 0, type, reverse, orientation});
                    layouts.push_back({zoom, 1, type, reverse, orientation});
                }
            }
        }
    }
    return layouts;
}

std::vector<DrawnText> drawTexts(const LayoutChoice& choice, Texts texts) {
    context::ApplicationContextParser parser;
    parser.setMode(choice.focusZoom, choice.highContrast, choice.type, choice.reverse, choice.orientation);
    const std::shared_ptr<context::ElementContainer> container = parser.parse();
    const TextObjects objects(container, texts);
    graphic::ObjectRenderer renderer(kCanvasWidth, kCanvasHeight);
    std::vector<DrawnText> drawn;
    renderer.render(
        container,
        [&](graphic::Canvas& canvas) {
            drawn.push_back(drawnText(canvas, objects, *container));
            drawn.back().layout = std::filesystem::path(parser.path()).stem();
        },
        [](const std::string& error) { ADD_FAILURE() << error; });
    return drawn;
}

Picture drawAlone(const std::string& text, const std::string& family) {
    constexpr const char* kWidth = "300";
    constexpr const char* kHeight = "120";
    LayoutBuilder layout;
    layout.imageBaseDirectory("/nowhere")
        .image({{"id", "place"}, {"width", kWidth}, {"height", kHeight}})
        .string({{"id", "text"}, {"value", text}})
        .font({{"id", "font"}, {"family", family}, {"size", "40"}, {"color", "FFFFFF"}})
        .object(
            {{"id", "object"}, {"type", "image"}, {"ref", "place"}, {"x", "0"}, {"y", "0"}},
            {makeElement("object",
                         {{"ref", "text"}, {"font", "font"}, {"text-align", "center"}, {"line-height", "inherit"}})});
    graphic::ObjectRenderer renderer(std::stoi(kWidth), std::stoi(kHeight));
    return renderOne(renderer, layout.container()).image;
}

}  // namespace vaultpad::test
