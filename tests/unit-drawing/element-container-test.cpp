#include "context/element-container.h"

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <type_traits>

#include "layout-builder.h"

namespace vaultpad::test {

namespace {

using context::ElementContainer;

// The five collections are alike but for their names.
struct Collection {
    const char* name;
    std::function<void(ElementContainer&, std::shared_ptr<ElementContainer::List>)> fill;
    std::function<std::shared_ptr<ElementContainer::Map>(const ElementContainer&)> all;
    std::function<ElementPointer(const ElementContainer&, const std::string&)> find;
};

void PrintTo(const Collection& collection, std::ostream* stream) {
    *stream << collection.name;
}

const std::vector<Collection>& collections() {
    static const std::vector<Collection> all = {
        {"fonts", [](auto& c, auto list) { c.fonts(list); }, [](auto& c) { return c.fonts(); },
         [](auto& c, auto& id) { return c.font(id); }},
        {"images", [](auto& c, auto list) { c.images(list); }, [](auto& c) { return c.images(); },
         [](auto& c, auto& id) { return c.image(id); }},
        {"strings", [](auto& c, auto list) { c.strings(list); }, [](auto& c) { return c.strings(); },
         [](auto& c, auto& id) { return c.string(id); }},
        {"objects", [](auto& c, auto list) { c.objects(list); }, [](auto& c) { return c.objects(); },
         [](auto& c, auto& id) { return c.object(id); }},
        {"voices", [](auto& c, auto list) { c.setVoices(list); }, [](auto& c) { return c.getVoices(); },
         [](auto& c, auto& id) { return c.getVoice(id); }},
    };
    return all;
}

class EachCollection : public testing::TestWithParam<Collection> {
protected:
    void fill(const std::vector<ElementPointer>& elements) { GetParam().fill(container_, listOf(elements)); }
    ElementPointer find(const std::string& id) const { return GetParam().find(container_, id); }
    ElementContainer::Map& all() const { return *GetParam().all(container_); }

    ElementContainer container_;
};

TEST_P(EachCollection, StartsEmpty) {
    ASSERT_TRUE(GetParam().all(container_));
    EXPECT_TRUE(all().empty());
}

TEST_P(EachCollection, FindsAnElementByItsId) {
    const ElementPointer a = makeElement("item", {{"id", "a"}});
    const ElementPointer b = makeElement("item", {{"id", "b"}});
    fill({a, b});
    EXPECT_EQ(find("a"), a);
    EXPECT_EQ(find("b"), b);
    EXPECT_EQ(all().size(), 2u);
}

TEST_P(EachCollection, GrowsOnceByALookupOfAnAbsentId) {
    EXPECT_EQ(find("absent"), nullptr);
    ASSERT_EQ(all().size(), 1u);
    EXPECT_EQ(all().count("absent"), 1u);
    EXPECT_EQ(find("absent"), nullptr);
    EXPECT_EQ(all().size(), 1u);
}

TEST_P(EachCollection, KeepsTheLastOfEqualIds) {
    const ElementPointer first = makeElement("first", {{"id", "k"}});
    const ElementPointer second = makeElement("second", {{"id", "k"}});
    fill({first, second});
    EXPECT_EQ(find("k"), second);
    EXPECT_EQ(all().size(), 1u);
}

TEST_P(EachCollection, KeepsAnElementWithoutIdUnderTheEmptyString) {
    const ElementPointer first = makeElement("first");
    const ElementPointer second = makeElement("second");
    fill({first, second});
    EXPECT_EQ(find(""), second);
    EXPECT_EQ(all().size(), 1u);
}

TEST_P(EachCollection, MergesASecondList) {
    const ElementPointer kept = makeElement("kept", {{"id", "kept"}});
    const ElementPointer later = makeElement("later", {{"id", "k"}});
    fill({kept, makeElement("earlier", {{"id", "k"}})});
    fill({later, makeElement("new", {{"id", "new"}})});
    EXPECT_EQ(all().size(), 3u);
    EXPECT_EQ(find("kept"), kept);
    EXPECT_EQ(find("k"), later);
}

TEST_P(EachCollection, FillsAnEntryThatAFailedLookupLeft) {
    EXPECT_EQ(find("a"), nullptr);
    const ElementPointer a = makeElement("item", {{"id", "a"}});
    fill({a});
    EXPECT_EQ(find("a"), a);
    EXPECT_EQ(all().size(), 1u);
}

TEST_P(EachCollection, GivesItsLiveMap) {
    const ElementPointer a = makeElement("item", {{"id", "elsewhere"}});
    all()["a"] = a;
    EXPECT_EQ(find("a"), a);
}

TEST_P(EachCollection, LeavesTheOthersAlone) {
    fill({makeElement("item", {{"id", "a"}})});
    EXPECT_EQ(find("absent"), nullptr);
    for (const Collection& other : collections()) {
        if (std::string(other.name) != GetParam().name) {
            EXPECT_TRUE(other.all(container_)->empty()) << other.name;
        }
    }
    EXPECT_EQ(container_.imageBaseDirectory(), "");
}

INSTANTIATE_TEST_SUITE_P(ElementContainer, EachCollection, testing::ValuesIn(collections()),
                         [](const auto& instance) { return std::string(instance.param.name); });

TEST(ElementContainer, KeepsTheImageBaseDirectory) {
    ElementContainer container;
    EXPECT_EQ(container.imageBaseDirectory(), "");
    container.imageBaseDirectory("/images");
    EXPECT_EQ(container.imageBaseDirectory(), "/images");
    container.imageBaseDirectory("");
    EXPECT_EQ(container.imageBaseDirectory(), "");
}

TEST(ElementContainer, IsAPlainClass) {
    EXPECT_FALSE(std::is_polymorphic_v<ElementContainer>);
}

}  // namespace

}  // namespace vaultpad::test
