// How growth is told from noise and from warm-up.
#include "growth.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace vaultpad::soak {

namespace {

TEST(Growth, OfWhatStaysIsNone) {
    Growth growth;
    for (int i = 0; i < 9; ++i) {
        growth.add(10, 500, 500);
    }
    EXPECT_DOUBLE_EQ(0, growth.perSession());
}

TEST(Growth, OfALeakIsTheLeak) {
    Growth growth;
    for (int i = 0; i < 9; ++i) {
        growth.add(10, 500 + 30 * i, 530 + 30 * i);
    }
    EXPECT_NEAR(3, growth.perSession(), 1e-9);
}

TEST(Growth, OfTheWarmUpDoesNotCount) {
    Growth growth;
    for (int i = 0; i < 9; ++i) {
        growth.add(10, 0, i < 3 ? 1e6 : 0);
    }
    EXPECT_NEAR(0, growth.perSession(), 1e-6);
}

TEST(Growth, BetweenTheStretchesDoesNotCount) {
    Growth growth;
    for (int i = 0; i < 9; ++i) {
        growth.add(10, 1000 * i, 1000 * i);
    }
    EXPECT_DOUBLE_EQ(0, growth.perSession());
}

TEST(Holdings, CountWhatIsAllocated) {
    const Holdings before = holdings();
    const std::unique_ptr<void, void (*)(void*)> block(std::malloc(50000), std::free);
    // Without this the allocation may be left out.
    *static_cast<volatile char*>(block.get()) = 1;
    EXPECT_GE(holdings().allocated, before.allocated + 50000);
}

}  // namespace

}  // namespace vaultpad::soak
