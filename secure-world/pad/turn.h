// Quarter turns of rectangles and pixels: the one place that knows which way round the panel is.
#ifndef VAULTPAD_SECURE_WORLD_PAD_TURN_H
#define VAULTPAD_SECURE_WORLD_PAD_TURN_H

#include <cstdint>
#include <vector>

#include "pad/geometry.h"

namespace vaultpad::secureworld {

// The values count quarter turns clockwise, so that turns add up modulo four.
enum class Turn { None = 0, Clockwise = 1, Half = 2, CounterClockwise = 3 };

// The turn that comes out of one turn after another.
Turn combined(Turn first, Turn second);

// The turn that undoes a turn.
Turn inverse(Turn turn);

// The turn that brings what is on the panel into the viewer's upright picture. orientation is a VaultPadTaOrientation.
Turn panelToViewer(std::uint32_t orientation);

// The size of a turned picture.
Size turned(Size size, Turn turn);

// Where a rectangle of a picture of the given size comes to lie when the whole picture is turned.
Rect turned(const Rect& rect, Size picture, Turn turn);

// The pixels of a turned picture, row by row. pixels holds size.width * size.height of them.
std::vector<std::uint32_t> turned(const std::vector<std::uint32_t>& pixels, Size size, Turn turn);

}  // namespace vaultpad::secureworld

#endif
