// In which voice and in which words an item is spoken.
#include "voice-maker/speech.h"

#include <gmock/gmock.h>

#include "languages.h"

namespace vaultpad::helpers {

namespace {

using testing::SizeIs;

class SpeechTest : public testing::Test {
protected:
    SpeechTest() { test::useBuiltLocales(); }

    static Speech speechFor(const char* locale) { return {locale, VAULTPAD_TEST_CATALOGUES}; }

    static std::string english(const std::string& text, const std::string& letter = "") {
        return speechFor("C.UTF-8").utterances({"id", text, false, letter}).front().markup;
    }
};

std::string spelled(const std::string& characters) {
    return "<say-as interpret-as=\"characters\">" + characters + "</say-as>";
}

}  // namespace

TEST_F(SpeechTest, TextIsTranslatedAndSpokenInTheMenuLanguage) {
    const auto ways = speechFor("de_DE.UTF-8").utterances({"key.Return", "Done", true, ""});
    ASSERT_THAT(ways, SizeIs(2));
    EXPECT_EQ(ways[0].voice, "de");
    EXPECT_EQ(ways[0].markup, "Fertig");
    EXPECT_EQ(ways[1].voice, "en-us");
    EXPECT_EQ(ways[1].markup, "Done");
}

TEST_F(SpeechTest, TextThatIsNotToBeTranslatedIsNot) {
    EXPECT_EQ(speechFor("de_DE.UTF-8").utterances({"id", "Done", false, ""}).front().markup, "Done");
}

TEST_F(SpeechTest, LocaleThatThisHostDoesNotHaveSpeaksEnglish) {
    for (const char* locale : {"xx_XX.UTF-8", "C.UTF-8", "", "en_US.UTF-8"}) {
        const Speech speech = speechFor(locale);
        EXPECT_EQ(speech.voice(), "en-us") << locale;
        EXPECT_THAT(speech.utterances({"id", "Done", true, ""}), SizeIs(1)) << locale;
    }
}

TEST_F(SpeechTest, LanguagesWhoseVoiceHasAnotherNameFindIt) {
    EXPECT_EQ(speechFor("pt_BR.UTF-8").voice(), "pt-br");
    EXPECT_EQ(speechFor("pt_PT.UTF-8").voice(), "pt");
    EXPECT_EQ(speechFor("zh_CN.UTF-8").voice(), "cmn");
    EXPECT_EQ(speechFor("zh_TW.UTF-8").voice(), "cmn");
}

TEST_F(SpeechTest, SingleCharactersAreSpokenByName) {
    EXPECT_EQ(english("q"), spelled("q"));
    EXPECT_EQ(english("7"), spelled("7"));
    EXPECT_EQ(english("é"), spelled("é"));
    EXPECT_EQ(english("Done"), "Done");
}

TEST_F(SpeechTest, MarkupCharactersAreEscaped) {
    EXPECT_EQ(english("&"), spelled("&amp;"));
    EXPECT_EQ(english("<"), spelled("&lt;"));
    EXPECT_EQ(english("\""), spelled("&quot;"));
    EXPECT_EQ(english("a > b"), "a &gt; b");
}

TEST_F(SpeechTest, LetterTakesTheFirstPlaceholdersPlace) {
    EXPECT_EQ(english("Capital %s", "Q"), "Capital " + spelled("Q"));
    EXPECT_EQ(english("%s, big", "Q"), spelled("Q") + ", big");
    EXPECT_EQ(english("No place", "Q"), "No place");
}

TEST_F(SpeechTest, EmptyTextIsNotTheCataloguesHeader) {
    EXPECT_EQ(speechFor("de_DE.UTF-8").utterances({"id", "", true, ""}).front().markup, "");
}

}  // namespace vaultpad::helpers
