// Plain geometry: pixels, x to the right, y downwards, right and bottom edges exclusive.
#ifndef VAULTPAD_SECURE_WORLD_PAD_GEOMETRY_H
#define VAULTPAD_SECURE_WORLD_PAD_GEOMETRY_H

#include <algorithm>

namespace vaultpad::secureworld {

struct Size {
    int width = 0;
    int height = 0;
};

struct Rect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    int right() const { return x + width; }
    int bottom() const { return y + height; }
    bool empty() const { return width <= 0 || height <= 0; }
};

inline bool operator==(const Size& a, const Size& b) {
    return a.width == b.width && a.height == b.height;
}

inline bool operator==(const Rect& a, const Rect& b) {
    return a.x == b.x && a.y == b.y && a.width == b.width && a.height == b.height;
}

inline bool operator!=(const Rect& a, const Rect& b) {
    return !(a == b);
}

// Whether inner lies wholly within outer.
inline bool contains(const Rect& outer, const Rect& inner) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.right() <= outer.right() &&
           inner.bottom() <= outer.bottom();
}

// The smallest rectangle around both; an empty one counts as nothing.
inline Rect united(const Rect& a, const Rect& b) {
    if (a.empty()) {
        return b;
    }
    if (b.empty()) {
        return a;
    }
    const int x = std::min(a.x, b.x);
    const int y = std::min(a.y, b.y);
    return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

// What both cover; an empty rectangle when they do not meet.
inline Rect intersected(const Rect& a, const Rect& b) {
    const int x = std::max(a.x, b.x);
    const int y = std::max(a.y, b.y);
    return {x, y, std::max(0, std::min(a.right(), b.right()) - x), std::max(0, std::min(a.bottom(), b.bottom()) - y)};
}

}  // namespace vaultpad::secureworld

#endif
