/* A layout's images as the library draws and packs them for the trusted application. */
#ifndef VAULTPAD_TOOLS_DRAWN_LAYOUT_H
#define VAULTPAD_TOOLS_DRAWN_LAYOUT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "context/element-container.h"
#include "display/bitmap.h"
#include "pad/geometry.h"

namespace vaultpad::tools {

/* No place or size beyond this many pixels is taken: far outside of any screen, and sums of such numbers are safe. */
constexpr int kFarthest = 100000;

/* A text within an image. */
struct DrawnText {
    std::size_t position = 0; /* of its element: 0 is the top-level object, then what is nested in it, depth first */
    int statedSize = 0;       /* font size that the layout states */
    int drawnSize = 0;        /* font size that was left of it to make the text fit */
    secureworld::Rect box;    /* from the image's top left corner, pixels */
    std::uint32_t colour = 0; /* 0xFFRRGGBB */
};

struct DrawnImage {
    std::string id;
    secureworld::Rect place;          /* within the pad's own area, upright for the viewer */
    std::vector<std::uint8_t> packed; /* as sent to the trusted application, turned as the panel is */
    std::vector<DrawnText> texts;     /* in the order of their positions */
};

using IdFilter = std::function<bool(const std::string& id)>;

/*
 * Draws the layout's top-level objects, or those that the filter accepts, for a panel with the given orientation (a
 * VaultPadTaOrientation). A container is drawn once. Throws std::runtime_error with the renderer's message.
 */
std::vector<DrawnImage> drawLayout(const std::shared_ptr<context::ElementContainer>& layout, std::uint32_t orientation,
                                   const IdFilter& filter = {});

/* An image as the trusted application unpacks it, upright for the viewer. */
secureworld::Bitmap unpacked(const DrawnImage& image, std::uint32_t orientation);

}  // namespace vaultpad::tools

#endif
