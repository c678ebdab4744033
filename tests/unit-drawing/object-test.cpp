#include "graphic/object.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using vaultpad::graphic::Object;

TEST(Object, StartsEmptyAtTheOrigin) {
    const Object object;
    EXPECT_EQ(object.id(), "");
    EXPECT_EQ(object.top(), 0);
    EXPECT_EQ(object.left(), 0);
    EXPECT_EQ(object.width(), 0);
    EXPECT_EQ(object.height(), 0);
    EXPECT_EQ(object.evas(), nullptr);
    ASSERT_TRUE(object.children());
    EXPECT_TRUE(object.children()->empty());
    EXPECT_EQ(object.toString(), "id: , top: 0, left: 0, width: 0, height: 0");
}

TEST(Object, KeepsEveryField) {
    int handle = 0;
    Object object;
    object.id("k1");
    object.top(1);
    object.left(2);
    object.width(3);
    object.height(4);
    object.x(5);
    object.y(6);
    object.evas(reinterpret_cast<Eo*>(&handle));
    EXPECT_EQ(object.id(), "k1");
    EXPECT_EQ(object.top(), 1);
    EXPECT_EQ(object.left(), 2);
    EXPECT_EQ(object.width(), 3);
    EXPECT_EQ(object.height(), 4);
    EXPECT_EQ(object.x(), 5);
    EXPECT_EQ(object.y(), 6);
    EXPECT_EQ(object.evas(), reinterpret_cast<Eo*>(&handle));
}

TEST(Object, GivesTheLiveListOfItsChildren) {
    const Object object;
    const auto child = std::make_shared<Object>();
    object.children()->push_back(child);
    ASSERT_EQ(object.children()->size(), 1u);
    EXPECT_EQ(object.children()->front(), child);
}

TEST(Object, PrintsIdAndRectangleOnly) {
    Object object;
    object.id("k1");
    object.left(12);
    object.width(90);
    object.height(40);
    object.x(7);
    object.y(8);
    object.children()->push_back(std::make_shared<Object>());
    EXPECT_EQ(object.toString(), "id: k1, top: 0, left: 12, width: 90, height: 40");
}

TEST(Object, PrintsNegativeAndLargeNumbersPlainly) {
    Object object;
    object.top(std::numeric_limits<int>::min());
    object.left(-1);
    object.width(1234567);
    EXPECT_EQ(object.toString(), "id: , top: -2147483648, left: -1, width: 1234567, height: 0");
}

TEST(Object, FreesItsSubtree) {
    std::weak_ptr<Object> grandchild;
    {
        const Object object;
        const auto child = std::make_shared<Object>();
        const auto leaf = std::make_shared<Object>();
        child->children()->push_back(leaf);
        object.children()->push_back(child);
        grandchild = leaf;
    }
    EXPECT_TRUE(grandchild.expired());
}

}  // namespace
