// parseAudio: the voice files.
#include "audio/voice-guide.h"
#include "context/application-context-parser.h"
#include "exception.h"
#include "platform-test.h"
#include "temporary-folder.h"

namespace vaultpad::test {

namespace {

using context::ApplicationContextParser;
using context::ElementContainer;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class VoiceTextTest : public PlatformTest {
protected:
    VoiceTextTest() {
        platform().television.applicationRoot = folder_.path();
        writeKeyboard("<audio><voices><voice id=\"keyboard\"/></voices></audio>");
        writePinpad("<audio><voices><voice id=\"pinpad\"/></voices></audio>");
    }

    void writeKeyboard(const std::string& text) const {
        folder_.write("vaultpad/res/xml/audio/keyboard-audio.xml", text);
    }
    void writePinpad(const std::string& text) const { folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", text); }

    static Strings ids(const ElementContainer::Map& map) {
        Strings result;
        for (const auto& entry : map) {
            result.push_back(entry.first);
        }
        return result;
    }

    Strings voices(int type) { return ids(*parser.parseAudio(type)->getVoices()); }

    ApplicationContextParser parser;
    TemporaryFolder folder_;
};

}  // namespace

TEST_F(VoiceTextTest, TypeTwoReadsTheKeyboardsFile) {
    EXPECT_THAT(voices(2), ElementsAre("keyboard"));
    EXPECT_THAT(platform().callsOf("tzplatform_mkpath"),
                ElementsAre("tzplatform_mkpath(28, vaultpad/res/xml/audio/keyboard-audio.xml)"));
}

TEST_F(VoiceTextTest, EveryOtherTypeReadsThePinpadsFile) {
    for (const int type : {1, 0, 7, -2}) {
        EXPECT_THAT(voices(type), ElementsAre("pinpad")) << type;
    }
}

TEST_F(VoiceTextTest, MissingFileThrowsTheXmlLibrarysMessage) {
    platform().television.applicationRoot = folder_.path() + "/none";
    try {
        parser.parseAudio(1);
        FAIL() << "parseAudio returned";
    } catch (const exception::Exception& error) {
        EXPECT_STRNE(error.what(), "");
    }
}

TEST_F(VoiceTextTest, MalformedFileThrows) {
    writePinpad("<audio><voices></audio>");
    EXPECT_THROW(parser.parseAudio(1), exception::Exception);
}

TEST_F(VoiceTextTest, OfTwoItemsWithOneIdTheLaterStays) {
    writePinpad(R"(<audio><voices><voice id="a" text="one"/><voice id="a" text="two"/></voices></audio>)");
    const auto container = parser.parseAudio(1);
    EXPECT_EQ(container->getVoices()->size(), 1u);
    EXPECT_EQ(container->getVoice("a")->attribute("text"), "two");
}

TEST_F(VoiceTextTest, SectionsAreMergedAndLaterIdsReplaceEarlierOnes) {
    writePinpad(R"(<any><voices><v id="a" n="1"/><v id="b"/></voices><voices><v id="a" n="2"/></voices></any>)");
    const auto container = parser.parseAudio(1);
    EXPECT_THAT(ids(*container->getVoices()), UnorderedElementsAre("a", "b"));
    EXPECT_EQ(container->getVoice("a")->attribute("n"), "2");
}

TEST_F(VoiceTextTest, LayoutSectionsInAVoiceFileAreIgnored) {
    writePinpad(R"(<audio><fonts><font id="f"/></fonts><images basedir="/x"><image id="i"/></images>
        <objects><object id="o"/></objects><strings><string id="s"/></strings><voices><voice id="v"/></voices></audio>)");
    const auto container = parser.parseAudio(1);
    EXPECT_THAT(ids(*container->getVoices()), ElementsAre("v"));
    EXPECT_THAT(*container->fonts(), IsEmpty());
    EXPECT_THAT(*container->images(), IsEmpty());
    EXPECT_THAT(*container->objects(), IsEmpty());
    EXPECT_THAT(*container->strings(), IsEmpty());
    EXPECT_EQ(container->imageBaseDirectory(), "");
}

TEST_F(VoiceTextTest, VoiceSectionInALayoutIsIgnored) {
    folder_.write("vaultpad/res/xml/normal/pinpad.xml", "<layout><voices><voice id=\"v\"/></voices></layout>");
    parser.setMode(0, 0, 1, 0, 0);
    EXPECT_THAT(*parser.parse()->getVoices(), IsEmpty());
}

TEST_F(VoiceTextTest, FileWithoutVoicesYieldsNone) {
    writePinpad("<audio><Voices><voice id=\"v\"/></Voices></audio>");
    EXPECT_THAT(voices(1), IsEmpty());
}

TEST_F(VoiceTextTest, ItemsCalledTextOrCommentAndCommentsAreDropped) {
    writePinpad(
        "<audio><voices> words <text id=\"t\"/><comment id=\"c\"/><!-- x --><voice id=\"v\"/></voices></audio>");
    EXPECT_THAT(voices(1), ElementsAre("v"));
}

TEST_F(VoiceTextTest, ItemWithoutAnIdIsKeptUnderTheEmptyOne) {
    writePinpad("<audio><voices><voice/></voices></audio>");
    EXPECT_THAT(voices(1), ElementsAre(""));
}

TEST_F(VoiceTextTest, ChosenLayoutIsNeitherUsedNorChanged) {
    parser.setMode(0, 0, 2, 0, 0);
    const std::string chosen = parser.path();
    parser.parseAudio(1);
    EXPECT_EQ(parser.path(), chosen);
}

}  // namespace vaultpad::test
