#include "graphic/canvas.h"

#include <gtest/gtest.h>

#include <array>
#include <type_traits>

namespace {

using vaultpad::graphic::Canvas;
using vaultpad::graphic::Object;

TEST(Canvas, StartsWithoutObjectsBufferAndSize) {
    const Canvas canvas;
    EXPECT_EQ(canvas.size(), 0);
    EXPECT_EQ(canvas.buffer(), nullptr);
    EXPECT_EQ(canvas.width(), 0);
    EXPECT_EQ(canvas.height(), 0);
}

TEST(Canvas, TakesABufferAndItsSize) {
    std::array<unsigned int, 6> pixels{};
    const Canvas canvas(pixels.data(), 3, 2);
    EXPECT_EQ(canvas.size(), 0);
    EXPECT_EQ(canvas.buffer(), pixels.data());
    EXPECT_EQ(canvas.width(), 3);
    EXPECT_EQ(canvas.height(), 2);
}

TEST(Canvas, KeepsObjectsInTheOrderOfAddingAndEvenTwice) {
    Canvas canvas;
    const auto first = std::make_shared<Object>();
    const auto second = std::make_shared<Object>();
    canvas.add(first);
    canvas.add(first);
    canvas.add(second);
    EXPECT_EQ(canvas.size(), 3);
    EXPECT_EQ(canvas.object(0), first);
    EXPECT_EQ(canvas.object(1), first);
    EXPECT_EQ(canvas.object(2), second);
}

TEST(Canvas, LetsItsObjectsGoWhenCleared) {
    std::array<unsigned int, 6> pixels{7};
    Canvas canvas(pixels.data(), 3, 2);
    const auto object = std::make_shared<Object>();
    canvas.add(object);
    canvas.clear();
    EXPECT_EQ(canvas.size(), 0);
    EXPECT_EQ(object.use_count(), 1);
    EXPECT_EQ(canvas.buffer(), pixels.data());
    EXPECT_EQ(canvas.width(), 3);
    EXPECT_EQ(canvas.height(), 2);
    EXPECT_EQ(pixels[0], 7u);
}

TEST(Canvas, LeavesTheBufferToItsOwnerWhenDestroyed) {
    const auto pixels = std::make_unique<unsigned int[]>(6);
    const auto object = std::make_shared<Object>();
    {
        Canvas canvas(pixels.get(), 3, 2);
        canvas.buffer()[5] = 9;
        canvas.add(object);
    }
    EXPECT_EQ(pixels[5], 9u);
    EXPECT_EQ(object.use_count(), 1);
}

TEST(Canvas, ReplacesBufferAndSize) {
    std::array<unsigned int, 6> pixels{};
    Canvas canvas;
    canvas.buffer(pixels.data());
    canvas.width(2);
    canvas.height(3);
    EXPECT_EQ(canvas.buffer(), pixels.data());
    EXPECT_EQ(canvas.width(), 2);
    EXPECT_EQ(canvas.height(), 3);
}

TEST(Canvas, IsAPlainClass) {
    EXPECT_FALSE(std::is_polymorphic_v<Canvas>);
    EXPECT_FALSE(std::is_polymorphic_v<Object>);
}

}  // namespace
