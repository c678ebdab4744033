// Where the focus goes: pure geometry over the keys' rectangles as the viewer sees them.
#ifndef VAULTPAD_SECURE_WORLD_PAD_FOCUS_H
#define VAULTPAD_SECURE_WORLD_PAD_FOCUS_H

#include <cstddef>
#include <optional>
#include <vector>

#include "pad/geometry.h"

namespace vaultpad::secureworld {

enum class Direction { Up, Down, Left, Right };

// The keys' indices in reading order: the topmost key and all whose middle lies above its lower edge make the first
// row, read from left to right; then the same among the rest.
std::vector<std::size_t> readingOrder(const std::vector<Rect>& keys);

// The key that an arrow leads to from the key `focused`, or nothing when the focus stays.
//
// The band of the focused key is what it covers across the direction of the arrow. Among the keys in that band that
// begin beyond its middle, the one with the smallest gap along the direction is next; of equally far ones the one
// whose middle is closest across it. With no key in the band, the keys that lie wholly beyond the focused one compete
// by their gap along the direction plus twice their gap across it. Ties go to the first key in reading order. The
// focus does not wrap around.
std::optional<std::size_t> nextKey(const std::vector<Rect>& keys, std::size_t focused, Direction direction);

// The key whose middle is closest to the middle of `place`, ties in reading order; nothing when there are no keys.
std::optional<std::size_t> nearestKey(const std::vector<Rect>& keys, const Rect& place);

}  // namespace vaultpad::secureworld

#endif
