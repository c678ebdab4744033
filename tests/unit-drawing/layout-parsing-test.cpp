#include <libxml++/libxml++.h>

#include "exception.h"
#include "parser-fixture.h"

namespace vaultpad::test {

namespace {

class LayoutParsing : public ParserTest {};

TEST_F(LayoutParsing, SortsTheItemsOfItsSectionsIntoTheirMaps) {
    const auto container = parse(R"(<?xml version="1.0" encoding="UTF-8"?>
        <layout version="1">
            <fonts><font id="f" size="28"/></fonts>
            <images basedir="/images"><image id="i" url="key.png"/></images>
            <strings><string id="s" value="OK"/></strings>
            <objects><object id="o" ref="s"/></objects>
        </layout>)");
    ASSERT_EQ(container->fonts()->size(), 1u);
    EXPECT_EQ(container->font("f")->attribute("size"), "28");
    ASSERT_EQ(container->images()->size(), 1u);
    EXPECT_EQ(container->image("i")->attribute("url"), "key.png");
    ASSERT_EQ(container->strings()->size(), 1u);
    EXPECT_EQ(container->string("s")->attribute("value"), "OK");
    ASSERT_EQ(container->objects()->size(), 1u);
    EXPECT_EQ(container->object("o")->attribute("ref"), "s");
    EXPECT_EQ(container->imageBaseDirectory(), "/images");
    EXPECT_TRUE(container->getVoices()->empty());
}

TEST_F(LayoutParsing, GivesANewContainerEachTime) {
    const auto first = parse("<layout><fonts><font id='f'/></fonts></layout>");
    const auto second = parser_.parse();
    EXPECT_NE(first, second);
    EXPECT_NE(first->font("f"), second->font("f"));
}

TEST_F(LayoutParsing, HasNoImageBaseDirectoryWithoutBasedir) {
    EXPECT_EQ(parse("<layout><images><image id='i'/></images></layout>")->imageBaseDirectory(), "");
}

TEST_F(LayoutParsing, TakesTheBasedirOfTheLastImagesSectionEvenWhenAbsent) {
    const auto container = parse("<layout><images basedir='/a'><image id='i'/></images><images/></layout>");
    EXPECT_EQ(container->imageBaseDirectory(), "");
    EXPECT_EQ(container->images()->size(), 1u);
    EXPECT_EQ(parse("<layout><images basedir='/a'/><images basedir='/b'/></layout>")->imageBaseDirectory(), "/b");
}

TEST_F(LayoutParsing, KeepsTheLaterOfEqualIds) {
    const auto container = parse("<layout><fonts><font id='f' size='1'/><font id='f' size='2'/></fonts></layout>");
    EXPECT_EQ(container->fonts()->size(), 1u);
    EXPECT_EQ(container->font("f")->attribute("size"), "2");
}

TEST_F(LayoutParsing, DropsAnItemThatIsCalledTextOrCommentWithItsSubtree) {
    const auto container = parse(
        "<layout><objects><text id='a'><object id='b'/></text><comment id='c'/>"
        "<object id='o'><text id='d'/><Text id='e'/></object></objects></layout>");
    ASSERT_EQ(container->objects()->size(), 1u);
    const auto children = container->object("o")->children();
    ASSERT_EQ(children->size(), 1u);
    EXPECT_EQ(children->front()->name(), "Text");
}

TEST_F(LayoutParsing, AddsASecondSectionToTheFirst) {
    const auto container = parse(
        "<layout><fonts><font id='a' size='1'/><font id='b'/></fonts><strings/>"
        "<fonts><font id='c'/><font id='a' size='2'/></fonts></layout>");
    EXPECT_EQ(container->fonts()->size(), 3u);
    EXPECT_EQ(container->font("a")->attribute("size"), "2");
}

TEST_F(LayoutParsing, IgnoresSectionsOfAnotherName) {
    const auto container = parse(
        "<layout><Fonts><font id='a'/></Fonts><font id='b'/><voices><voice id='c'/></voices>"
        "<group><fonts><font id='d'/></fonts></group></layout>");
    EXPECT_TRUE(container->fonts()->empty());
    EXPECT_TRUE(container->objects()->empty());
    EXPECT_TRUE(container->getVoices()->empty());
}

TEST_F(LayoutParsing, HasEmptyMapsWithoutASection) {
    const auto container = parse("<anything/>");
    EXPECT_TRUE(container->fonts()->empty());
    EXPECT_TRUE(container->images()->empty());
    EXPECT_TRUE(container->strings()->empty());
    EXPECT_TRUE(container->objects()->empty());
}

TEST_F(LayoutParsing, IndexesOnlyDirectChildrenAndKeepsTheRestInTheirSubtrees) {
    const auto container = parse(
        "<layout><objects><key id='k'>\n  label\n  <!-- first --><first id='a'><deep id='b'/></first>"
        "<second id='c'/></key></objects></layout>");
    ASSERT_EQ(container->objects()->size(), 1u);
    const auto key = container->object("k");
    EXPECT_EQ(key->name(), "key");
    ASSERT_EQ(key->children()->size(), 2u);
    EXPECT_EQ(key->children()->front()->name(), "first");
    EXPECT_EQ(key->children()->back()->name(), "second");
    EXPECT_EQ(key->children()->front()->parent().lock(), key);
    EXPECT_EQ(key->children()->front()->children()->front()->attribute("id"), "b");
}

TEST_F(LayoutParsing, LetsTheRootAndTheSectionsGo) {
    const auto container = parse("<layout><objects><key id='k'/></objects></layout>");
    EXPECT_TRUE(container->object("k")->parent().expired());
}

TEST_F(LayoutParsing, KeepsAnItemWithoutIdUnderTheEmptyString) {
    EXPECT_EQ(parse("<layout><objects><key x='4'/></objects></layout>")->object("")->attribute("x"), "4");
}

TEST_F(LayoutParsing, KeepsAttributeValuesAsTheXmlLibraryReportsThem) {
    const auto container =
        parse("<layout><strings><string id='s' value=' &lt;&amp;&#x20AC;\xC3\xA9&#10;' Empty=''/></strings></layout>");
    EXPECT_EQ(container->string("s")->attribute("value"), " <&\xE2\x82\xAC\xC3\xA9\n");
    EXPECT_EQ(container->string("s")->attribute("Empty"), "");
}

TEST_F(LayoutParsing, ReadsOtherEncodingsIntoUtf8) {
    const auto container = parse(
        "<?xml version='1.0' encoding='ISO-8859-1'?><layout><strings><string id='s' value='\xE9'/></strings></layout>");
    EXPECT_EQ(container->string("s")->attribute("value"), "\xC3\xA9");
}

TEST_F(LayoutParsing, ThrowsTheXmlLibrarysMessageForAMissingFile) {
    parser_.setMode(0, 0, 2, 1, 1);
    try {
        parser_.parse();
        FAIL() << "no exception";
    } catch (const exception::Exception& error) {
        std::string expected;
        try {
            xmlpp::DomParser().parse_file(parser_.path());
        } catch (const xmlpp::exception& libraryError) {
            expected = libraryError.what();
        }
        EXPECT_EQ(error.what(), expected);
        EXPECT_NE(expected, "");
    }
}

TEST_F(LayoutParsing, ParsesAgainAfterAnError) {
    EXPECT_NE(parseError("<layout>"), "");
    EXPECT_EQ(parse("<layout><fonts><font id='f'/></fonts></layout>")->fonts()->size(), 1u);
}

TEST_F(LayoutParsing, BuildsTheTreeOfOneNode) {
    xmlpp::DomParser dom;
    dom.parse_memory("<a one='1'>word<b/><!--no--><c two='2'/></a>");
    const auto element = parser_.traverse(*dom.get_document()->get_root_node());
    ASSERT_TRUE(element);
    EXPECT_EQ(element->name(), "a");
    EXPECT_EQ(element->attribute("one"), "1");
    EXPECT_TRUE(element->parent().expired());
    ASSERT_EQ(element->children()->size(), 2u);
    EXPECT_EQ(element->children()->back()->attribute("two"), "2");
    EXPECT_EQ(element->children()->back()->parent().lock(), element);
}

TEST_F(LayoutParsing, GivesNoTreeForTextAndComments) {
    xmlpp::DomParser dom;
    dom.parse_memory("<a>word<!--no--></a>");
    for (const auto* child : dom.get_document()->get_root_node()->get_children()) {
        EXPECT_EQ(parser_.traverse(*child), nullptr) << child->get_name();
    }
}

}  // namespace

}  // namespace vaultpad::test
