#include "context/element.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace {

using vaultpad::context::Element;

TEST(Element, StartsWithItsNameAndNothingElse) {
    const auto element = std::make_shared<Element>("key");
    EXPECT_EQ(element->name(), "key");
    ASSERT_TRUE(element->children());
    EXPECT_TRUE(element->children()->empty());
    EXPECT_TRUE(element->parent().expired());
    EXPECT_FALSE(element->mark);
}

TEST(Element, IsAPlainClass) {
    EXPECT_FALSE(std::is_polymorphic_v<Element>);
}

TEST(Element, GivesTheLiveListOfItsChildren) {
    const auto element = std::make_shared<Element>("key");
    element->children()->push_back(std::make_shared<Element>("label"));
    ASSERT_EQ(element->children()->size(), 1u);
    EXPECT_EQ(element->children()->front()->name(), "label");
}

TEST(Element, AppendsChildrenInOrderWhateverTheyAre) {
    const auto element = std::make_shared<Element>("key");
    const auto child = std::make_shared<Element>("label");
    element->addChild(child);
    element->addChild(nullptr);
    element->addChild(child);
    const Element::List expected = {child, nullptr, child};
    EXPECT_EQ(*element->children(), expected);
}

TEST(Element, LeavesAChildsParentToTheCaller) {
    const auto element = std::make_shared<Element>("key");
    const auto child = std::make_shared<Element>("label");
    element->addChild(child);
    EXPECT_TRUE(child->parent().expired());
    child->parent(element);
    EXPECT_EQ(child->parent().lock(), element);
}

TEST(Element, ReadsAnAbsentAttributeAsEmptyAndStaysSo) {
    Element element("key");
    EXPECT_EQ(element.attribute("x"), "");
    EXPECT_EQ(element.attribute("x"), "");
}

TEST(Element, ReplacesAnAttribute) {
    Element element("key");
    element.attribute("x", "1");
    element.attribute("x", "2");
    EXPECT_EQ(element.attribute("x"), "2");
    element.attribute("x", "");
    EXPECT_EQ(element.attribute("x"), "");
}

TEST(Element, TellsAttributeNamesApartByCase) {
    Element element("key");
    element.attribute("x", "1");
    EXPECT_EQ(element.attribute("X"), "");
}

TEST(Element, ReturnsCopiesOfValues) {
    Element element("key");
    element.attribute("id", "a");
    std::string value = element.attribute("id");
    value += "b";
    EXPECT_EQ(element.attribute("id"), "a");
}

TEST(Element, FreesTheTreeWithItsRoot) {
    std::weak_ptr<Element> leaf;
    {
        const auto root = std::make_shared<Element>("root");
        const auto middle = std::make_shared<Element>("middle");
        const auto child = std::make_shared<Element>("leaf");
        middle->addChild(child);
        child->parent(middle);
        root->addChild(middle);
        middle->parent(root);
        leaf = child;
    }
    EXPECT_TRUE(leaf.expired());
}

TEST(Element, OutlivesItsParent) {
    const auto child = std::make_shared<Element>("leaf");
    {
        const auto root = std::make_shared<Element>("root");
        root->addChild(child);
        child->parent(root);
    }
    EXPECT_TRUE(child->parent().expired());
    EXPECT_EQ(child->name(), "leaf");
}

}  // namespace
