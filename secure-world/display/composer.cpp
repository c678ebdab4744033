#include "display/composer.h"

#include <algorithm>
#include <cstddef>

namespace vaultpad::secureworld {

namespace {

constexpr std::uint32_t kOpaque = 0xff;

// Premultiplied source over destination, rounded. A colour brighter than its alpha, which no renderer makes, is cut
// at white instead of spilling into its neighbour.
std::uint32_t over(std::uint32_t source, std::uint32_t below) {
    const std::uint32_t alpha = source >> 24;
    if (alpha == kOpaque) {
        return source;
    }
    std::uint32_t result = 0;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        const std::uint32_t kept = ((below >> shift & 0xff) * (kOpaque - alpha) + kOpaque / 2) / kOpaque;
        result |= std::min(kOpaque, (source >> shift & 0xff) + kept) << shift;
    }
    return result;
}

Rect frameOf(const Bitmap& bitmap) {
    return {0, 0, bitmap.size.width, bitmap.size.height};
}

}  // namespace

void fill(Bitmap* frame, const Rect& rect, std::uint32_t colour) {
    const Rect visible = intersected(rect, frameOf(*frame));
    for (int y = visible.y; y < visible.bottom(); ++y) {
        std::fill_n(frame->row(y) + visible.x, visible.width, colour);
    }
}

void draw(Bitmap* frame, const std::vector<Layer>& layers) {
    for (const Layer& layer : layers) {
        const Rect place = {layer.x, layer.y, layer.bitmap->size.width, layer.bitmap->size.height};
        const Rect visible = intersected(place, frameOf(*frame));
        for (int y = visible.y; y < visible.bottom(); ++y) {
            const std::uint32_t* source = layer.bitmap->row(y - layer.y) + (visible.x - layer.x);
            std::uint32_t* target = frame->row(y) + visible.x;
            for (int x = 0; x < visible.width; ++x) {
                if (source[x] != 0) {
                    target[x] = over(source[x], target[x]);
                }
            }
        }
    }
}

}  // namespace vaultpad::secureworld
