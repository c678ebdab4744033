#include "pad/focus.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <tuple>

namespace vaultpad::secureworld {

namespace {

// A gap across the direction counts this many times as much as one along it.
constexpr int kAcrossWeight = 2;

// A key as an arrow to the right sees it: `near` to `far` along the arrow, `first` to `last` across it.
struct Span {
    int near;
    int far;
    int first;
    int last;
};

// Doubled, so that the middle of an odd extent is exact.
int doubledMiddle(int from, int to) {
    return from + to;
}

Span spanOf(const Rect& key, Direction direction) {
    switch (direction) {
        case Direction::Up:
            return {-key.bottom(), -key.y, key.x, key.right()};
        case Direction::Down:
            return {key.y, key.bottom(), key.x, key.right()};
        case Direction::Left:
            return {-key.right(), -key.x, key.y, key.bottom()};
        case Direction::Right:
            break;
    }
    return {key.x, key.right(), key.y, key.bottom()};
}

// The order in which candidates are preferred: in the band before outside of it, then distance, then how far the
// middles are apart across the direction.
using Preference = std::tuple<bool, int, int>;

std::optional<Preference> preferenceOf(const Span& from, const Span& to) {
    const int along = to.near - from.far;
    const int across = std::max({0, to.first - from.last, from.first - to.last});
    const int middles = std::abs(doubledMiddle(to.first, to.last) - doubledMiddle(from.first, from.last));
    const bool outside = to.first >= from.last || from.first >= to.last;
    if (!outside) {
        const bool beyond = 2 * to.near >= doubledMiddle(from.near, from.far);
        return beyond ? std::optional(Preference{false, along, middles}) : std::nullopt;
    }
    return along >= 0 ? std::optional(Preference{true, along + kAcrossWeight * across, middles}) : std::nullopt;
}

std::int64_t squaredDistance(const Rect& a, const Rect& b) {
    const std::int64_t x = doubledMiddle(a.x, a.right()) - doubledMiddle(b.x, b.right());
    const std::int64_t y = doubledMiddle(a.y, a.bottom()) - doubledMiddle(b.y, b.bottom());
    return x * x + y * y;
}

}  // namespace

std::vector<std::size_t> readingOrder(const std::vector<Rect>& keys) {
    std::vector<std::size_t> order(keys.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return std::tuple(keys[a].y, keys[a].x, a) < std::tuple(keys[b].y, keys[b].x, b);
    });
    for (auto row = order.begin(); row != order.end();) {
        const int edge = keys[*row].bottom();
        const auto end = std::stable_partition(row, order.end(), [&](std::size_t key) {
            return doubledMiddle(keys[key].y, keys[key].bottom()) < 2 * edge;
        });
        std::stable_sort(row, end, [&](std::size_t a, std::size_t b) { return keys[a].x < keys[b].x; });
        row = end;
    }
    return order;
}

std::optional<std::size_t> nextKey(const std::vector<Rect>& keys, std::size_t focused, Direction direction) {
    const Span from = spanOf(keys[focused], direction);
    std::optional<std::size_t> best;
    std::optional<Preference> bestPreference;
    for (const std::size_t key : readingOrder(keys)) {
        if (key == focused) {
            continue;
        }
        const std::optional<Preference> preference = preferenceOf(from, spanOf(keys[key], direction));
        if (preference && (!bestPreference || *preference < *bestPreference)) {
            best = key;
            bestPreference = preference;
        }
    }
    return best;
}

std::optional<std::size_t> nearestKey(const std::vector<Rect>& keys, const Rect& place) {
    std::optional<std::size_t> best;
    for (const std::size_t key : readingOrder(keys)) {
        if (!best || squaredDistance(keys[key], place) < squaredDistance(keys[*best], place)) {
            best = key;
        }
    }
    return best;
}

}  // namespace vaultpad::secureworld
