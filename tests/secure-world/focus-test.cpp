#include "pad/focus.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <set>
#include <vector>

namespace vaultpad::secureworld {
namespace {

using Keys = std::vector<Rect>;
constexpr std::array<Direction, 4> kDirections = {Direction::Up, Direction::Down, Direction::Left, Direction::Right};

Keys grid(int columns, int rows) {
    Keys keys;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            keys.push_back({column * 24, row * 14, 20, 10});
        }
    }
    return keys;
}

// Ten letters, nine set half a key to the right, a row with wide ends, and a row with a space bar.
Keys letterKeyboard() {
    Keys keys;
    for (int i = 0; i < 10; ++i) {
        keys.push_back({i * 100, 0, 90, 80});
    }
    for (int i = 0; i < 9; ++i) {
        keys.push_back({50 + i * 100, 90, 90, 80});
    }
    keys.push_back({0, 180, 140, 80});
    for (int i = 0; i < 7; ++i) {
        keys.push_back({150 + i * 100, 180, 90, 80});
    }
    keys.push_back({850, 180, 140, 80});
    keys.insert(keys.end(), {{0, 270, 190, 80}, {200, 270, 590, 80}, {800, 270, 190, 80}});
    return keys;
}

std::set<std::size_t> reachableFrom(const Keys& keys, std::size_t start) {
    std::set<std::size_t> reached = {start};
    std::vector<std::size_t> open = {start};
    while (!open.empty()) {
        const std::size_t key = open.back();
        open.pop_back();
        for (const Direction direction : kDirections) {
            const auto next = nextKey(keys, key, direction);
            if (next && reached.insert(*next).second) {
                open.push_back(*next);
            }
        }
    }
    return reached;
}

TEST(Focus, MovesToTheNeighbourInAGrid) {
    const Keys keys = grid(3, 5);
    EXPECT_EQ(3u, nextKey(keys, 4, Direction::Left));
    EXPECT_EQ(5u, nextKey(keys, 4, Direction::Right));
    EXPECT_EQ(1u, nextKey(keys, 4, Direction::Up));
    EXPECT_EQ(7u, nextKey(keys, 4, Direction::Down));
}

TEST(Focus, StaysAtTheEdgesOfAGridInsteadOfWrappingAround) {
    const Keys keys = grid(3, 5);
    EXPECT_FALSE(nextKey(keys, 3, Direction::Left));
    EXPECT_FALSE(nextKey(keys, 5, Direction::Right));
    EXPECT_FALSE(nextKey(keys, 1, Direction::Up));
    EXPECT_FALSE(nextKey(keys, 13, Direction::Down));
}

TEST(Focus, ReturnsByTheOppositeArrowInAGrid) {
    const Keys keys = grid(6, 4);
    const std::array<std::array<Direction, 2>, 2> opposites = {
        {{Direction::Right, Direction::Left}, {Direction::Down, Direction::Up}}};
    for (std::size_t key = 0; key < keys.size(); ++key) {
        for (const auto& [there, back] : opposites) {
            if (const auto next = nextKey(keys, key, there)) {
                EXPECT_EQ(key, nextKey(keys, *next, back));
            }
            if (const auto next = nextKey(keys, key, back)) {
                EXPECT_EQ(key, nextKey(keys, *next, there));
            }
        }
    }
}

TEST(Focus, ReachesEveryKeyOfAStaggeredKeyboardFromEveryKey) {
    const Keys keys = letterKeyboard();
    for (std::size_t start = 0; start < keys.size(); ++start) {
        EXPECT_EQ(keys.size(), reachableFrom(keys, start).size()) << "from key " << start;
    }
}

TEST(Focus, ReachesAKeyThatStandsAloneBesideTheOthers) {
    Keys keys = grid(3, 3);
    keys.push_back({200, 100, 20, 10});
    EXPECT_EQ(keys.size(), reachableFrom(keys, 0).size());
    EXPECT_EQ(9u, nextKey(keys, 8, Direction::Right));
    EXPECT_EQ(keys.size(), reachableFrom(keys, 9).size());
}

TEST(Focus, PrefersTheNextRowInItsBandToACloserMiddleElsewhere) {
    const Keys keys = {{0, 0, 20, 10}, {0, 40, 20, 10}, {22, 12, 20, 10}};
    EXPECT_EQ(1u, nextKey(keys, 0, Direction::Down));
}

TEST(Focus, TakesTheKeyWhoseMiddleIsClosestAmongEquallyFarOnes) {
    const Keys keys = letterKeyboard();
    const std::size_t spaceBar = 29;
    EXPECT_EQ((Rect{200, 270, 590, 80}), keys[spaceBar]);
    // The bar's middle is at 495; the letter above it with the closest is the one from 450 to 540.
    EXPECT_EQ(23u, nextKey(keys, spaceBar, Direction::Up));
    EXPECT_EQ((Rect{450, 180, 90, 80}), keys[23]);
}

TEST(Focus, BreaksTiesInReadingOrder) {
    const Keys keys = {{10, 0, 20, 10}, {20, 14, 20, 10}, {0, 14, 20, 10}};
    EXPECT_EQ(2u, nextKey(keys, 0, Direction::Down));
}

TEST(Focus, ReadsRowByRowFromTheTopLeftKey) {
    const Keys keys = {{50, 14, 20, 10}, {24, 2, 20, 10}, {0, 14, 20, 10}, {0, 3, 20, 10}};
    EXPECT_EQ((std::vector<std::size_t>{3, 1, 2, 0}), readingOrder(keys));
    EXPECT_TRUE(readingOrder({}).empty());
}

TEST(Focus, FindsTheKeyNearestToAPlace) {
    const Keys keys = grid(3, 3);
    EXPECT_EQ(4u, nearestKey(keys, keys[4]));
    EXPECT_EQ(8u, nearestKey(keys, {500, 500, 1, 1}));
    EXPECT_FALSE(nearestKey({}, {0, 0, 1, 1}));
}

}  // namespace
}  // namespace vaultpad::secureworld
