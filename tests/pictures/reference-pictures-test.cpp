/* The pad as the secure display shows it, drawn by the shipped library and the trusted application. */
#include <gtest/gtest.h>
#include <libintl.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "client.h"
#include "languages.h"
#include "picture-comparison.h"
#include "television.h"

namespace vaultpad::test {

namespace {

/*
 * Shades: the secure display has steps of 4, and what rounds differently (the toolkit's code for another processor,
 * another release of the font rasteriser or of rsvg-convert) moves a pixel of an edge by a few of them. More than that
 * is allowed where a glyph's outline was touched up, in as many pixels as a dot over a letter has. A label that moves
 * by one pixel differs in many more; the tests below hold the tolerance to that.
 */
constexpr Tolerance kTolerance = {24, 12};

class FontEnvironment : public testing::Environment {
public:
    void SetUp() override {
        setenv("FONTCONFIG_FILE", VAULTPAD_FONT_CONFIGURATION, 1);
        useBuiltLocales();
    }
};

// Owned by GoogleTest.
[[maybe_unused]] const testing::Environment* const fonts = testing::AddGlobalTestEnvironment(new FontEnvironment);

std::string reference(const std::string& name) {
    return VAULTPAD_REFERENCE_FOLDER "/" + name + ".png";
}

testing::AssertionResult matches(const Picture& picture, const std::string& group, const std::string& name) {
    return matchesReference(picture, reference(group + "/" + name), VAULTPAD_PICTURE_FOLDER "/" + group, kTolerance);
}

// Moves the focus and types a character: every layout has one beside its first key.
constexpr const char* kTypeOne = "Right,Return";

std::string latestFrame(const Television& television) {
    std::string latest;
    for (const auto& entry : std::filesystem::directory_iterator(television.frames())) {
        latest = std::max(latest, entry.path().string());
    }
    return latest;
}

// Opens a pad, presses the remote control's keys, and returns what is on the secure display then.
Picture showPad(Television& television, int type, const std::string& keys) {
    television.set("paths", "application-root", VAULTPAD_APPLICATION_ROOT)
        .set("secure-world", "display", "png")
        .set("secure-world", "frames", television.frames())
        .apply();
    Client client(1024);
    EXPECT_EQ(client.open(type), 0) << television.log();
    EXPECT_EQ(client.pressAll(keys).result, 0) << television.log();
    return readPng(latestFrame(television));
}

struct PadLook {
    int type;
    bool portrait;
    bool reverse;
    bool focusZoom;
    bool highContrast;
};

// The name of the layout file.
std::string nameOfLook(const PadLook& look) {
    const std::string suffix = std::string(look.focusZoom ? "e" : "") + (look.highContrast ? "h" : "");
    return std::string(look.portrait ? "vertical-" : "") + (look.reverse ? "reverse-" : "") +
           (look.type == VAULTPAD_TYPE_PINPAD ? "pinpad" : "keyboard") + (suffix.empty() ? "" : "-") + suffix;
}

std::ostream& operator<<(std::ostream& stream, const PadLook& look) {
    return stream << nameOfLook(look);
}

std::string testNameOf(const testing::TestParamInfo<PadLook>& info) {
    std::string name = nameOfLook(info.param);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

std::vector<PadLook> allLooks() {
    std::vector<PadLook> looks;
    for (const int type : {VAULTPAD_TYPE_PINPAD, VAULTPAD_TYPE_KEYBOARD}) {
        for (const bool portrait : {false, true}) {
            for (const bool reverse : {false, true}) {
                for (const bool focusZoom : {false, true}) {
                    looks.push_back({type, portrait, reverse, focusZoom, false});
                    looks.push_back({type, portrait, reverse, focusZoom, true});
                }
            }
        }
    }
    return looks;
}

class LayoutPicture : public testing::TestWithParam<PadLook> {};

TEST_P(LayoutPicture, IsTheReference) {
    const PadLook look = GetParam();
    Television television;
    television.set("settings", "focus-zoom", look.focusZoom ? "1" : "0")
        .set("settings", "high-contrast", look.highContrast ? "1" : "0")
        .set("orientation", "mirrored", look.reverse ? "true" : "false")
        .set("orientation", "rotator", look.portrait ? "portrait" : "landscape");
    EXPECT_TRUE(matches(showPad(television, look.type, kTypeOne), "layouts", nameOfLook(look)));
}

INSTANTIATE_TEST_SUITE_P(Of, LayoutPicture, testing::ValuesIn(allLooks()), testNameOf);

struct Page {
    const char* name;
    const char* keys;
};

std::ostream& operator<<(std::ostream& stream, const Page& page) {
    return stream << page.name;
}

std::string nameOfPage(const testing::TestParamInfo<Page>& info) {
    return info.param.name;
}

// The first page is the layout's picture.
class PagePicture : public testing::TestWithParam<Page> {};

TEST_P(PagePicture, IsTheReference) {
    Television television;
    const Picture picture = showPad(television, VAULTPAD_TYPE_KEYBOARD, GetParam().keys);
    EXPECT_TRUE(matches(picture, "layouts", std::string("keyboard-page-") + GetParam().name));
}

INSTANTIATE_TEST_SUITE_P(Of, PagePicture,
                         testing::Values(Page{"upper", "Down*3,Return"}, Page{"symbols", "Down*4,Return"},
                                         Page{"symbols2", "Down*4,Return,Up,Return"}),
                         nameOfPage);

class LanguagePicture : public testing::TestWithParam<Language> {};

TEST_P(LanguagePicture, IsTheReference) {
    Television television;
    television.set("settings", "language", GetParam().locale);
    const Picture picture = showPad(television, VAULTPAD_TYPE_PINPAD, kTypeOne);
    EXPECT_TRUE(matches(picture, "languages", GetParam().code));
    // The client's process has the library's locale and catalogues now.
    EXPECT_STRNE(dgettext("vaultpad", "Done"), "Done");
}

INSTANTIATE_TEST_SUITE_P(In, LanguagePicture, testing::ValuesIn(translatedLanguages()), nameOf);

class PictureTolerance : public testing::Test {
protected:
    // The key 5 of the PIN pad, with some room around it.
    static constexpr int kLeft = 160;
    static constexpr int kTop = 186;
    static constexpr int kWidth = 124;
    static constexpr int kHeight = 56;

    static bool accepts(const Picture& picture, const Picture& other) {
        const Difference difference = differenceBetween(picture, other, kTolerance.component);
        return difference.sameSize && difference.pixels <= kTolerance.pixels;
    }

    Picture pinpad_ = readPng(reference("layouts/pinpad"));
};

TEST_F(PictureTolerance, RefusesADigitMovedByOnePixel) {
    for (const auto& [dx, dy] : {std::pair{1, 0}, std::pair{0, 1}}) {
        Picture moved = pinpad_;
        for (int y = kTop; y < kTop + kHeight; ++y) {
            for (int x = kLeft; x < kLeft + kWidth; ++x) {
                moved.pixel(x, y, pinpad_.pixel(x + dx, y + dy));
            }
        }
        EXPECT_FALSE(accepts(moved, pinpad_)) << dx << "," << dy;
    }
}

TEST_F(PictureTolerance, RefusesADigitThatIsMissing) {
    Picture without = pinpad_;
    without.fill(kLeft, kTop, kWidth, kHeight, pinpad_.pixel(kLeft, kTop));
    EXPECT_FALSE(accepts(without, pinpad_));
}

TEST_F(PictureTolerance, RefusesEveryOtherLanguage) {
    std::vector<std::pair<std::string, Picture>> pictures = {{"en", pinpad_}};
    for (const Language& language : translatedLanguages()) {
        pictures.emplace_back(language.code, readPng(reference("languages/" + language.code)));
    }
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(accepts(pictures[i].second, pictures[j].second))
                << pictures[i].first << " and " << pictures[j].first;
        }
    }
}

TEST_F(PictureTolerance, AcceptsAnotherShadeOfEveryPixel) {
    Picture lighter = pinpad_;
    for (std::uint32_t& pixel : lighter.pixels) {
        const std::uint32_t green = pixel >> 8 & 0xFF;
        pixel = (pixel & 0xFFFF00FF) | std::min(0xFFu, green + 4) << 8;
    }
    EXPECT_TRUE(accepts(lighter, pinpad_));
}

}  // namespace

}  // namespace vaultpad::test
