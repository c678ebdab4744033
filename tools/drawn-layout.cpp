#include "drawn-layout.h"

#include <Evas.h>
#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "communication/pixel-packing.h"
#include "graphic/object-renderer.h"
#include "pad/turn.h"
#include "toolkit-session.h"

namespace vaultpad::tools {

namespace {

using secureworld::Size;

Size imageSize(const graphic::Object& object) {
    return {object.width(), object.height()};
}

// Packs the corner that the object fills, turned as the panel is.
std::vector<std::uint8_t> packedCorner(const graphic::Canvas& canvas, Size size, std::uint32_t orientation) {
    const auto width = static_cast<std::size_t>(size.width);
    const auto height = static_cast<std::size_t>(size.height);
    std::vector<std::uint8_t> packed(width * height * VAULTPAD_TA_BYTES_PER_PIXEL);
    const auto pack = orientation == VAULTPAD_TA_ORIENTATION_LANDSCAPE  ? communication::packCorner
                      : orientation == VAULTPAD_TA_ORIENTATION_PORTRAIT ? communication::packCornerClockwise
                                                                        : communication::packCornerCounterClockwise;
    pack(canvas.buffer(), static_cast<std::size_t>(canvas.width()), width, height, packed.data());
    return packed;
}

DrawnText textOf(const graphic::Object& object, const context::ElementContainer& layout, context::Element& element) {
    DrawnText text;
    const char* family = nullptr;
    evas_object_text_font_get(object.evas(), &family, &text.drawnSize);
    text.statedSize = std::stoi(layout.font(element.attribute("font"))->attribute("size"));
    text.box = {object.left(), object.top(), object.width(), object.height()};
    int red = 0;
    int green = 0;
    int blue = 0;
    evas_object_color_get(object.evas(), &red, &green, &blue, nullptr);
    text.colour = 0xff000000u | static_cast<std::uint32_t>(red) << 16 | static_cast<std::uint32_t>(green) << 8 |
                  static_cast<std::uint32_t>(blue);
    return text;
}

// The renderer keeps an Object for every element, nested alike and in the same order.
void collectTexts(const graphic::Object& object, const context::ElementContainer& layout, context::Element& element,
                  std::size_t& position, std::vector<DrawnText>& texts) {
    const char* type = evas_object_type_get(object.evas());
    if (type != nullptr && std::strcmp(type, "text") == 0) {
        texts.push_back(textOf(object, layout, element));
        texts.back().position = position;
    }
    ++position;
    auto child = element.children()->begin();
    for (const auto& nested : *object.children()) {
        collectTexts(*nested, layout, **child++, position, texts);
    }
}

DrawnImage imageOf(const graphic::Canvas& canvas, const context::ElementContainer& layout, std::uint32_t orientation) {
    const graphic::Object& object = *canvas.object(0);
    const Size size = imageSize(object);
    if (size.width < 0 || size.height < 0 || size.width > canvas.width() || size.height > canvas.height()) {
        throw std::runtime_error("object '" + object.id() + "' is larger than the screen; make its image smaller");
    }
    if (std::abs(static_cast<long>(object.x())) > kFarthest || std::abs(static_cast<long>(object.y())) > kFarthest) {
        throw std::runtime_error("object '" + object.id() + "' is far outside of the screen; mend its x and y");
    }
    DrawnImage image;
    image.id = object.id();
    image.place = {object.x(), object.y(), size.width, size.height};
    image.packed = packedCorner(canvas, size, orientation);
    std::size_t position = 0;
    collectTexts(object, layout, *layout.object(object.id()), position, image.texts);
    return image;
}

// An element that is marked counts as delivered, and the renderer leaves it out.
void leaveOut(context::ElementContainer& layout, const IdFilter& filter) {
    for (const auto& [id, element] : *layout.objects()) {
        if (element && !filter(id)) {
            element->mark = true;
        }
    }
}

}  // namespace

std::vector<DrawnImage> drawLayout(const std::shared_ptr<context::ElementContainer>& layout, std::uint32_t orientation,
                                   const IdFilter& filter) {
    if (filter) {
        leaveOut(*layout, filter);
    }
    const ToolkitSession toolkit;
    graphic::ObjectRenderer renderer;
    std::vector<DrawnImage> images;
    std::string failure;
    renderer.render(
        layout, [&](graphic::Canvas& canvas) { images.push_back(imageOf(canvas, *layout, orientation)); },
        [&](const std::string& message) { failure = message; });
    if (!failure.empty()) {
        throw std::runtime_error(failure);
    }
    // The renderer's own order is that of a hash table.
    std::sort(images.begin(), images.end(), [](const DrawnImage& a, const DrawnImage& b) { return a.id < b.id; });
    return images;
}

secureworld::Bitmap unpacked(const DrawnImage& image, std::uint32_t orientation) {
    const secureworld::Turn toViewer = secureworld::panelToViewer(orientation);
    const Size onPanel =
        secureworld::turned(Size{image.place.width, image.place.height}, secureworld::inverse(toViewer));
    return secureworld::unpack(image.packed.data(), onPanel, toViewer);
}

}  // namespace vaultpad::tools
