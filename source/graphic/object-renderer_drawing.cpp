#include <Ecore.h>
#include <libintl.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "exception.h"
#include "graphic/object-renderer.h"
#include "log.h"

namespace vaultpad::graphic {

namespace {

// Horizontal room kept free inside the parent when a text is shrunk to fit.
constexpr int kTextAllowance = 23;
constexpr int kOpaque = 255;
constexpr const char* kTextDomain = "vaultpad";

struct Rgb {
    int red = 0;
    int green = 0;
    int blue = 0;
};

// Two hexadecimal digits per component. The digits pass through one stream, and what it cannot read stays in it: after
// a "#" all components are 0. A colour that ends before a component begins throws std::out_of_range. Both are intended.
Rgb parseColour(context::Element& font) {
    std::array<int, 3> components{};
    std::stringstream stream;
    for (std::size_t i = 0; i < components.size(); ++i) {
        stream.clear();
        stream << font.attribute("color").substr(2 * i, 2);
        stream >> std::hex >> components[i];
    }
    return {components[0], components[1], components[2]};
}

int integerOr(const std::string& value, int absent) {
    return value.empty() ? absent : std::stoi(value);
}

// Centring uses the parent's size but not its place, so it is relative to the parent only at the origin: intended.
int topEdge(const std::string& top, const std::string& lineHeight, const Object& parent, int height) {
    if (!top.empty()) {
        return std::stoi(top);
    }
    if (lineHeight.empty()) {
        return parent.top();
    }
    return lineHeight == "inherit" ? (parent.height() - height) / 2 : std::stoi(lineHeight);
}

int leftEdge(const std::string& left, const std::string& textAlign, int margin, const Object& parent, int width) {
    if (!left.empty()) {
        return std::stoi(left);
    }
    if (textAlign == "left") {
        return margin;
    }
    if (textAlign == "center") {
        return (parent.width() - width) / 2;
    }
    if (textAlign != "right") {
        return parent.left();
    }
    const std::int64_t edge = std::int64_t{parent.width()} - width - margin;
    if (edge < INT_MIN || edge > INT_MAX) {
        throw std::out_of_range("margin");
    }
    return static_cast<int>(edge);
}

// A bitmap counts with its own size, anything else with its current geometry.
void measure(const Eo* evasObject, int& width, int& height) {
    const char* type = evas_object_type_get(evasObject);
    if (type != nullptr && std::strcmp(type, "image") == 0) {
        evas_object_image_size_get(evasObject, &width, &height);
    } else {
        evas_object_geometry_get(evasObject, nullptr, nullptr, &width, &height);
    }
}

// References of nested elements are checked where they are used: the layout must not contain a dangling one.
template <typename Pointer>
const Pointer& resolved(const Pointer& item, const char* message) {
    if (!item) {
        throw exception::Exception(message);
    }
    return item;
}

}  // namespace

void ObjectRenderer::assertElement(ElementPointer element, ContainerPointer container) {
    const std::string ref = element->attribute("ref");
    if (ref.empty()) {
        throw exception::Exception("Master element's ref attribute is empty.");
    }
    const bool isImage = element->attribute("type") == "image";
    resolved(isImage ? container->image(ref) : container->string(ref), "Can't find master element's reference object.");
    if (isImage) {
        if (container->imageBaseDirectory().empty()) {
            throw exception::Exception("Image's base directory is not find.");
        }
        return;
    }
    const std::string font = element->attribute("font");
    if (font.empty()) {
        throw exception::Exception("Master element's font attribute not exists.");
    }
    resolved(container->font(font), "Font object not exists.");
}

Eo* ObjectRenderer::createEvasObject(const ElementPointer& element, const ObjectPointer& parent,
                                     const ContainerPointer& container) {
    constexpr const char* kDanglingRef = "Nested element's reference object does not exist.";
    if (element->attribute("type") == "image") {
        const ElementPointer image = resolved(container->image(element->attribute("ref")), kDanglingRef);
        return image->attribute("type") == "file" ? createImage(image, container->imageBaseDirectory())
                                                  : createRectangle(image);
    }
    const ElementPointer string = resolved(container->string(element->attribute("ref")), kDanglingRef);
    const ElementPointer font =
        resolved(container->font(element->attribute("font")), "Nested element's font object does not exist.");
    return createText(string, parent, font);
}

// An exception leaves without ecore_thread_main_loop_end() for this level; render() leaves the lock once. Intended.
ObjectRenderer::ObjectPointer ObjectRenderer::onRender(ElementPointer element, ObjectPointer parent,
                                                       ContainerPointer container) {
    ObjectPointer object(new Object);
    ecore_thread_main_loop_begin();
    Eo* evasObject = createEvasObject(element, parent, container);
    int width = 0;
    int height = 0;
    measure(evasObject, width, height);

    const std::string top = element->attribute("top");
    const std::string left = element->attribute("left");
    const std::string lineHeight = element->attribute("line-height");
    const std::string textAlign = element->attribute("text-align");
    const int topPixel = topEdge(top, lineHeight, *parent, height);
    // Converted even where "left" makes it irrelevant: a margin that is no number is an error everywhere.
    const int margin = integerOr(element->attribute("margin"), 0);
    const int leftPixel = leftEdge(left, textAlign, margin, *parent, width);

    evas_object_move(evasObject, leftPixel, topPixel);
    evas_object_resize(evasObject, width, height);
    evas_object_show(evasObject);

    object->id(element->attribute("id"));
    object->top(topPixel);
    object->left(leftPixel);
    object->width(width);
    object->height(height);
    object->evas(evasObject);
    for (const auto& child : *element->children()) {
        object->children()->push_back(onRender(child, object, container));
    }
    ecore_thread_main_loop_end();
    return object;
}

Eo* ObjectRenderer::createRectangle(ElementPointer image) {
    Eo* rectangle = evas_object_rectangle_add(evas_);
    evas_object_color_set(rectangle, 0, 0, 0, 0);
    const int width = std::stoi(image->attribute("width"));
    const int height = std::stoi(image->attribute("height"));
    evas_object_resize(rectangle, width, height);
    return rectangle;
}

Eo* ObjectRenderer::createImage(ElementPointer image, std::string baseDirectory) {
    const std::string path = baseDirectory + "/" + image->attribute("url");
    if (access(path.c_str(), F_OK) != 0) {
        CA_LOG_ERROR("There is no image file : %s", path.c_str());
    }
    Eo* bitmap = evas_object_image_add(evas_);
    evas_object_image_file_set(bitmap, path.c_str(), nullptr);
    evas_object_image_filled_set(bitmap, EINA_TRUE);
    return bitmap;
}

Eo* ObjectRenderer::createText(ElementPointer string, ObjectPointer parent, ElementPointer font) {
    Eo* text = evas_object_text_add(evas_);
    const std::string value = string->attribute("value");
    // The empty message id stands for the catalogue's header, which is nothing to draw.
    const bool translated = !value.empty() && string->attribute("i18n") == "true";
    evas_object_text_text_set(text, translated ? dgettext(kTextDomain, value.c_str()) : value.c_str());

    const Rgb colour = parseColour(*font);
    int size = std::stoi(font->attribute("size"));
    evas_object_text_font_set(text, font->attribute("family").c_str(), size);
    evas_object_color_set(text, colour.red, colour.green, colour.blue, kOpaque);

    while (size >= 1) {
        int width = 0;
        evas_object_geometry_get(text, nullptr, nullptr, &width, nullptr);
        if (parent->width() - kTextAllowance > width) {
            break;
        }
        --size;
        evas_object_text_font_set(text, font->attribute("family").c_str(), size);
    }
    return text;
}

}  // namespace vaultpad::graphic
