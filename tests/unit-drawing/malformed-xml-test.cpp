#include <chrono>

#include "exception.h"
#include "layout-builder.h"
#include "parser-fixture.h"

namespace vaultpad::test {

namespace {

using std::chrono::steady_clock;

// Generous for a machine under load; the inputs below take milliseconds.
constexpr std::chrono::seconds kBound{10};

class MalformedXml : public ParserTest {
protected:
    void SetUp() override { start_ = steady_clock::now(); }
    void TearDown() override { EXPECT_LT(steady_clock::now() - start_, kBound); }

private:
    steady_clock::time_point start_;
};

std::string repeated(const std::string& part, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

// Entities e0, e1, ..., each of which stands for ten of the one before.
std::string growingEntities(int levels) {
    std::string text = "<!DOCTYPE layout [<!ENTITY e0 'lol'>";
    for (int i = 1; i < levels; ++i) {
        text += "<!ENTITY e" + std::to_string(i) + " '" + repeated("&e" + std::to_string(i - 1) + ";", 10) + "'>";
    }
    return text + "]>";
}

TEST_F(MalformedXml, RefusesWhatIsNoDocument) {
    for (const std::string xml :
         {"", " ", "\n\n", "text", "<", "<>", "<layout", "<?xml version='1.0'?>", "<!-- only -->", "<a/><b/>",
          "<layout></Layout>", "<layout a='1' a='2'/>", "<layout a=1/>", "<layout><a></layout></a>",
          "<layout>&x;</layout>", "<layout a='<'/>", "<1/>",
          "<?xml version='1.0' encoding='no-such-encoding'?><layout/>"}) {
        EXPECT_NE(parseError(xml), "") << xml;
    }
}

TEST_F(MalformedXml, RefusesALayoutCutOffAnywhere) {
    const std::string whole =
        "<?xml version='1.0'?><layout><fonts><font id='f'/></fonts><!--c--><objects><![CDATA[c]]>"
        "<object id='o' ref='s'>t</object></objects></layout>";
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_NE(parseError(whole.substr(0, length)), "") << length;
    }
    EXPECT_EQ(parse(whole)->fonts()->size(), 1u);
}

TEST_F(MalformedXml, RefusesNulAndControlCharacters) {
    EXPECT_NE(parseError(std::string("<layout a='\0'/>", 15)), "");
    EXPECT_NE(parseError("<layout a='\x01'/>"), "");
    EXPECT_NE(parseError("<layout a='&#0;'/>"), "");
}

TEST_F(MalformedXml, RefusesInvalidUtf8) {
    for (const std::string bytes : {"\xFF", "\xC3", "\x80", "\xE2\x82", "\xED\xA0\x80", "\xF8\x88\x80\x80\x80"}) {
        EXPECT_NE(parseError("<layout><strings><string id='s' value='" + bytes + "'/></strings></layout>"), "");
    }
}

TEST_F(MalformedXml, RefusesEndlessNesting) {
    constexpr int kLevels = 100000;
    EXPECT_NE(parseError(repeated("<a>", kLevels)), "");
    EXPECT_NE(
        parseError("<layout><objects>" + repeated("<a>", kLevels) + repeated("</a>", kLevels) + "</objects></layout>"),
        "");
}

TEST_F(MalformedXml, ReadsADeepButReasonableNesting) {
    constexpr int kLevels = 200;
    const auto container = parse("<layout><objects>" + repeated("<a id='k'>", kLevels) + repeated("</a>", kLevels) +
                                 "</objects></layout>");
    int levels = 0;
    for (auto element = container->object("k"); element; ++levels) {
        element = element->children()->empty() ? nullptr : element->children()->front();
    }
    EXPECT_EQ(levels, kLevels);
}

TEST_F(MalformedXml, RefusesExplodingEntitiesInAnAttribute) {
    EXPECT_NE(parseError(growingEntities(10) + "<layout><strings><string id='s' value='&e9;'/></strings></layout>"),
              "");
}

TEST_F(MalformedXml, RefusesExplodingEntitiesInContent) {
    EXPECT_NE(parseError(growingEntities(10) + "<layout><strings>&e9;</strings></layout>"), "");
}

TEST_F(MalformedXml, RefusesAnEntityThatContainsItself) {
    EXPECT_NE(parseError("<!DOCTYPE layout [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><layout x='&a;'/>"), "");
    EXPECT_NE(parseError("<!DOCTYPE layout [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><layout>&a;</layout>"), "");
}

TEST_F(MalformedXml, ExpandsASmallEntityInAnAttribute) {
    const auto container = parse(
        "<!DOCTYPE layout [<!ENTITY ok 'O&#75;'>]><layout><strings><string id='s' value='&ok;!'/></strings></layout>");
    EXPECT_EQ(container->string("s")->attribute("value"), "OK!");
}

// The declarations of entities are linked with each other inside the library's tree, in a ring as soon as an entity
// refers to one that was declared before it.
TEST_F(MalformedXml, EndsWhenEntitiesInContentReferToEarlierOnes) {
    const auto container = parse(
        "<!DOCTYPE layout [<!ENTITY a '<font id=\"e\"/>'><!ENTITY b '&a;'>]>"
        "<layout><fonts>&b;<font id='f'/></fonts></layout>");
    EXPECT_EQ(container->fonts()->count("f"), 1u);
}

TEST_F(MalformedXml, RefusesAnExternalEntityInAnAttribute) {
    const std::string secret = write("secret.txt", "secret");
    EXPECT_NE(parseError("<!DOCTYPE layout [<!ENTITY e SYSTEM 'file://" + secret +
                         "'>]><layout><strings><string id='s' value='&e;'/></strings></layout>"),
              "");
}

void expectNoSecret(const ElementPointer& element) {
    if (!element) {
        return;
    }
    EXPECT_EQ(element->attribute("value"), "");
    EXPECT_NE(element->attribute("id"), "secret");
    for (const auto& child : *element->children()) {
        expectNoSecret(child);
    }
}

TEST_F(MalformedXml, ReadsNoExternalEntityInContent) {
    const std::string secret = write("secret.xml", "<string id='secret' value='secret'/>");
    const auto container = parse("<!DOCTYPE layout [<!ENTITY e SYSTEM 'file://" + secret +
                                 "'>]><layout><strings>&e;<string id='s'/></strings></layout>");
    EXPECT_EQ(container->strings()->count("s"), 1u);
    for (const auto& [id, element] : *container->strings()) {
        EXPECT_NE(id, "secret");
        expectNoSecret(element);
    }
}

TEST_F(MalformedXml, ReadsNoExternalDocumentType) {
    const std::string types = write("types.dtd", "<!ATTLIST string value CDATA 'secret'><!ENTITY e 'secret'>");
    const std::string type = "<!DOCTYPE layout SYSTEM 'file://" + types + "'>";
    const auto container = parse(type + "<layout><strings><string id='s'/></strings></layout>");
    EXPECT_EQ(container->string("s")->attribute("value"), "");
}

// What is neither text nor a comment makes an element; it has no id, and so does no harm but to an item without id.
TEST_F(MalformedXml, TakesCharacterDataAndInstructionsInASectionForItemsWithoutId) {
    const auto container = parse(
        "<?sort yes?><layout><fonts><![CDATA[<font id='c'/>]]><?php echo?><font id='f'/><?text no?></fonts>"
        "<![CDATA[c]]><?fonts no?></layout><?end?>");
    EXPECT_EQ(container->fonts()->size(), 2u);
    EXPECT_EQ(container->fonts()->count("f"), 1u);
    ASSERT_EQ(container->fonts()->count(""), 1u);
    EXPECT_EQ(container->font("")->name(), "php");
}

TEST_F(MalformedXml, RefusesAnAttributeAboveTheXmlLibrarysLimitAndReadsALargeOne) {
    constexpr std::size_t kMebibyte = 1024 * 1024;
    const std::string before = "<layout><strings><string id='s' value='";
    const std::string after = "'/></strings></layout>";
    const auto container = parse(before + std::string(kMebibyte, 'v') + after);
    EXPECT_EQ(container->string("s")->attribute("value").size(), kMebibyte);
    EXPECT_NE(parseError(before + std::string(20 * kMebibyte, 'v') + after), "");
}

TEST_F(MalformedXml, ReadsManyItems) {
    constexpr int kItems = 50000;
    std::string xml = "<layout><objects>";
    for (int i = 0; i < kItems; ++i) {
        xml += "<object id='" + std::to_string(i) + "'/>";
    }
    EXPECT_EQ(parse(xml + "</objects></layout>")->objects()->size(), static_cast<std::size_t>(kItems));
}

TEST_F(MalformedXml, RefusesAFolderInPlaceOfTheFile) {
    folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml/file", "");
    EXPECT_THROW(parser_.parseAudio(1), exception::Exception);
}

}  // namespace

}  // namespace vaultpad::test
