#include "pad/turn.h"

#include <cstddef>

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr int kQuarters = 4;

}  // namespace

Turn combined(Turn first, Turn second) {
    return static_cast<Turn>((static_cast<int>(first) + static_cast<int>(second)) % kQuarters);
}

Turn inverse(Turn turn) {
    return static_cast<Turn>((kQuarters - static_cast<int>(turn)) % kQuarters);
}

Turn panelToViewer(std::uint32_t orientation) {
    switch (orientation) {
        case VAULTPAD_TA_ORIENTATION_PORTRAIT:  // arrives turned clockwise
            return inverse(Turn::Clockwise);
        case VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED:  // arrives turned counter-clockwise
            return inverse(Turn::CounterClockwise);
        default:
            return Turn::None;
    }
}

Size turned(Size size, Turn turn) {
    return turn == Turn::Clockwise || turn == Turn::CounterClockwise ? Size{size.height, size.width} : size;
}

Rect turned(const Rect& rect, Size picture, Turn turn) {
    switch (turn) {
        case Turn::Clockwise:
            return {picture.height - rect.bottom(), rect.x, rect.height, rect.width};
        case Turn::Half:
            return {picture.width - rect.right(), picture.height - rect.bottom(), rect.width, rect.height};
        case Turn::CounterClockwise:
            return {rect.y, picture.width - rect.right(), rect.height, rect.width};
        case Turn::None:
            break;
    }
    return rect;
}

std::vector<std::uint32_t> turned(const std::vector<std::uint32_t>& pixels, Size size, Turn turn) {
    if (turn == Turn::None || pixels.empty()) {
        return pixels;
    }
    // A turn is linear: where the first pixel, its right and its lower neighbour go tells where all of them go.
    const std::ptrdiff_t row = turned(size, turn).width;
    const auto target = [&](int x, int y) {
        const Rect place = turned(Rect{x, y, 1, 1}, size, turn);
        return place.y * row + place.x;
    };
    const std::ptrdiff_t origin = target(0, 0);
    const std::ptrdiff_t right = target(1, 0) - origin;
    const std::ptrdiff_t down = target(0, 1) - origin;
    std::vector<std::uint32_t> result(pixels.size());
    const std::uint32_t* source = pixels.data();
    for (int y = 0; y < size.height; ++y) {
        std::ptrdiff_t index = origin + y * down;
        for (int x = 0; x < size.width; ++x, index += right) {
            result[static_cast<std::size_t>(index)] = *source++;
        }
    }
    return result;
}

}  // namespace vaultpad::secureworld
