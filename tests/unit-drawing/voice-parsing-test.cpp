#include <gmock/gmock.h>

#include "exception.h"
#include "parser-fixture.h"

namespace vaultpad::test {

namespace {

class VoiceParsing : public ParserTest {
protected:
    void writeBoth() {
        writeVoices("keyboard", "<v><voices><voice id='keyboard'/></voices></v>");
        writeVoices("pinpad", "<v><voices><voice id='pinpad'/></voices></v>");
    }
};

TEST_F(VoiceParsing, ReadsTheKeyboardsFileForTheKeyboardOnly) {
    writeBoth();
    EXPECT_EQ(parser_.parseAudio(2)->getVoices()->count("keyboard"), 1u);
    for (const int type : {1, 0, 7, -1}) {
        const auto voices = parser_.parseAudio(type)->getVoices();
        EXPECT_EQ(voices->count("pinpad"), 1u) << type;
        EXPECT_EQ(voices->size(), 1u) << type;
    }
}

TEST_F(VoiceParsing, AsksThePlatformForTheApplicationRoot) {
    writeBoth();
    parser_.parseAudio(2);
    parser_.parseAudio(1);
    EXPECT_THAT(platform().journal(),
                testing::ElementsAre("tzplatform_mkpath(28, vaultpad/res/xml/audio/keyboard-audio.xml)",
                                     "tzplatform_mkpath(28, vaultpad/res/xml/audio/pinpad-audio.xml)"));
}

TEST_F(VoiceParsing, NeitherUsesNorChangesTheSelectedLayout) {
    writeBoth();
    parser_.setMode(0, 0, 2, 0, 0);
    const std::string selected = parser_.path();
    EXPECT_EQ(parser_.parseAudio(1)->getVoices()->count("pinpad"), 1u);
    EXPECT_EQ(parser_.path(), selected);
}

TEST_F(VoiceParsing, ThrowsTheXmlLibrarysMessageForAMissingFile) {
    try {
        parser_.parseAudio(2);
        FAIL() << "no exception";
    } catch (const exception::Exception& error) {
        EXPECT_NE(std::string(error.what()).find("keyboard-audio.xml"), std::string::npos) << error.what();
    }
}

TEST_F(VoiceParsing, ThrowsForAMalformedFile) {
    writeVoices("pinpad", "<v><voices></v>");
    EXPECT_THROW(parser_.parseAudio(1), exception::Exception);
}

TEST_F(VoiceParsing, KeepsTheLaterOfEqualIds) {
    writeVoices("pinpad", "<v><voices><voice id='1' text='a'/><voice id='1' text='b'/></voices></v>");
    const auto container = parser_.parseAudio(1);
    EXPECT_EQ(container->getVoices()->size(), 1u);
    EXPECT_EQ(container->getVoice("1")->attribute("text"), "b");
}

TEST_F(VoiceParsing, MergesVoicesSections) {
    writeVoices("pinpad",
                "<v><voices><voice id='1' text='a'/><voice id='2'/></voices>"
                "<voices><voice id='1' text='b'/></voices></v>");
    const auto container = parser_.parseAudio(1);
    EXPECT_EQ(container->getVoices()->size(), 2u);
    EXPECT_EQ(container->getVoice("1")->attribute("text"), "b");
}

TEST_F(VoiceParsing, IgnoresLayoutSections) {
    writeVoices("pinpad",
                "<v><fonts><f id='a'/></fonts><images basedir='/i'><i id='a'/></images><strings><s id='a'/></strings>"
                "<objects><o id='a'/></objects><Voices><voice id='b'/></Voices></v>");
    const auto container = parser_.parseAudio(1);
    EXPECT_TRUE(container->fonts()->empty());
    EXPECT_TRUE(container->images()->empty());
    EXPECT_TRUE(container->strings()->empty());
    EXPECT_TRUE(container->objects()->empty());
    EXPECT_TRUE(container->getVoices()->empty());
    EXPECT_EQ(container->imageBaseDirectory(), "");
}

TEST_F(VoiceParsing, KeepsAnItemWithoutIdAndDropsOneCalledText) {
    writeVoices("pinpad", "<v><voices><voice text='a'/><text id='1'/> words </voices></v>");
    const auto container = parser_.parseAudio(1);
    EXPECT_EQ(container->getVoices()->size(), 1u);
    EXPECT_EQ(container->getVoice("")->attribute("text"), "a");
}

}  // namespace

}  // namespace vaultpad::test
