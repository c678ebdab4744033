// Puts a pad's pictures on top of each other.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_COMPOSER_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_COMPOSER_H

#include <cstdint>
#include <vector>

#include "display/bitmap.h"
#include "pad/geometry.h"

namespace vaultpad::secureworld {

// What the screen shows where there is no pad.
constexpr std::uint32_t kBackdrop = 0xff101418u;

struct Layer {
    const Bitmap* bitmap;  // borrowed
    int x;
    int y;
};

// Fills what of the rectangle lies in the frame.
void fill(Bitmap* frame, const Rect& rect, std::uint32_t colour);

// Draws the layers over the frame, first to last, each source over what is below; what lies outside is left out.
void draw(Bitmap* frame, const std::vector<Layer>& layers);

}  // namespace vaultpad::secureworld

#endif
