/* Every label of every layout, in every language: has it all its glyphs, and can it be read? */
#include <Evas.h>
#include <libintl.h>

#include <clocale>
#include <map>
#include <set>

#include "drawing-fixture.h"
#include "glyphs.h"
#include "languages.h"
#include "layout-texts.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A title, and three words on keys with and without the focus.
constexpr std::size_t kTextsOfALayout = 7;
constexpr const char* kFamily = "Noto Sans:lang=auto";

// As the library applies the language setting.
void speak(const Language& language) {
    useBuiltLocales();
    ASSERT_NE(setlocale(LC_ALL, language.locale.c_str()), nullptr)
        << language.locale << " is not in " << VAULTPAD_LOCALE_PATH << "; build the target vaultpad_locales";
    // The toolkit keeps the first language that it met.
    evas_language_reinit();
    bindtextdomain("vaultpad", VAULTPAD_APPLICATION_ROOT "/vaultpad/res/locale");
    platform().television.applicationRoot = VAULTPAD_APPLICATION_ROOT;
}

std::string whereabouts(const DrawnText& text) {
    return text.layout + ": " + text.object + ": \"" + text.text + "\"";
}

// What a language's layouts show; drawn once for all the tests.
const std::vector<DrawnText>& translatedTexts(const Language& language) {
    static std::map<std::string, std::vector<DrawnText>> textsOf;
    std::vector<DrawnText>& texts = textsOf[language.code];
    if (texts.empty()) {
        for (const LayoutChoice& layout : allLayouts()) {
            for (DrawnText& text : drawTexts(layout, Texts::Translated)) {
                texts.push_back(std::move(text));
            }
        }
    }
    return texts;
}

class Labels : public testing::TestWithParam<Language> {
protected:
    Labels() { platform().reset(); }
    ~Labels() override { setlocale(LC_ALL, "C"); }
    void SetUp() override {
        speak(GetParam());
        ASSERT_EQ(texts().size(), allLayouts().size() * kTextsOfALayout);
    }

    static const std::vector<DrawnText>& texts() { return translatedTexts(GetParam()); }
};

TEST_P(Labels, AreTranslated) {
    const std::set<std::string> english = {"Enter PIN", "Enter password", "Done", "Cancel", "Clear"};
    std::set<std::string> drawn;
    for (const DrawnText& text : texts()) {
        drawn.insert(text.text);
    }
    EXPECT_EQ(drawn.size(), english.size());
    for (const std::string& text : drawn) {
        EXPECT_EQ(english.count(text) == 0, GetParam().isTranslated()) << text;
    }
}

TEST_P(Labels, HaveAGlyphForEveryCharacter) {
    std::map<std::string, std::string> textOfFamily;
    for (const DrawnText& text : texts()) {
        textOfFamily[text.family] += text.text;
    }
    EXPECT_EQ(textOfFamily.size(), 2u);
    for (const auto& [family, text] : textOfFamily) {
        EXPECT_THAT(missingCharacters(text, family), IsEmpty())
            << "in " << family << "; install fonts-noto-core and fonts-noto-cjk";
    }
}

TEST_P(Labels, AreNotSmallerThanTheStylesAllow) {
    const std::map<std::string, int> smallest = {{"word", VAULTPAD_SMALLEST_WORD}, {"title", VAULTPAD_SMALLEST_TITLE}};
    for (const DrawnText& text : texts()) {
        EXPECT_GE(text.size, smallest.at(text.role)) << whereabouts(text) << ": shorten the translation";
    }
}

TEST_P(Labels, StayInsideTheirParents) {
    for (const DrawnText& text : texts()) {
        EXPECT_GE(text.left, 0) << whereabouts(text);
        EXPECT_LE(text.left + text.width, text.parentWidth) << whereabouts(text);
    }
}

// A title has nothing behind it: what touches the first or the last row is cut off, or all but.
TEST_P(Labels, LeaveTheTitlesWholeAboveAndBelow) {
    for (const DrawnText& text : texts()) {
        if (text.role != "title") {
            continue;
        }
        for (int x = 0; x < text.image.width; ++x) {
            ASSERT_EQ(text.image.pixel(x, 0), 0u) << whereabouts(text) << ": cut off above";
            ASSERT_EQ(text.image.pixel(x, text.image.height - 1), 0u) << whereabouts(text) << ": cut off below";
        }
    }
}

INSTANTIATE_TEST_SUITE_P(In, Labels, testing::ValuesIn(languages()), nameOf);

class Characters : public testing::Test {
protected:
    Characters() {
        platform().reset();
        speak({"en", "en_US.UTF-8"});
    }
    ~Characters() override { setlocale(LC_ALL, "C"); }
};

TEST_F(Characters, OnKeysHaveAGlyphAndKeepTheirSize) {
    std::map<std::string, std::string> textOfFamily;
    for (const LayoutChoice& layout : allLayouts()) {
        for (const DrawnText& text : drawTexts(layout, Texts::All)) {
            textOfFamily[text.family] += text.text;
            if (text.role == "character") {
                EXPECT_EQ(text.size, text.wantedSize) << whereabouts(text);
            }
        }
    }
    for (const auto& [family, text] : textOfFamily) {
        EXPECT_GT(text.size(), 1000u);
        EXPECT_THAT(missingCharacters(text, family), IsEmpty()) << "in " << family;
    }
}

TEST_F(Characters, ThatNoFontHasAreFound) {
    // Two private characters, one not assigned, and a control character that shows nothing.
    EXPECT_THAT(missingCharacters("A\xF4\x8F\xBF\xBD"
                                  "B\xF3\xB0\x80\x80 \xCD\xB8\x7F",
                                  kFamily),
                ElementsAre("\x7F", "\xCD\xB8", "\xF3\xB0\x80\x80", "\xF4\x8F\xBF\xBD"));
}

TEST_F(Characters, ThatOnlyAnotherFamilyHasAreNotTakenForMissing) {
    EXPECT_THAT(missingCharacters("입力テ了מת", kFamily), IsEmpty());
}

TEST_F(Characters, ThatDifferFromCountryToCountryFollowTheLanguage) {
    const std::string bone = "\xE9\xAA\xA8";
    std::set<std::vector<std::uint32_t>> pictures;
    for (const char* locale : {"zh_CN.UTF-8", "zh_TW.UTF-8", "ja_JP.UTF-8"}) {
        speak({"", locale});
        pictures.insert(drawAlone(bone, kFamily).pixels);
    }
    EXPECT_EQ(pictures.size(), 3u);
}

}  // namespace

}  // namespace vaultpad::test
