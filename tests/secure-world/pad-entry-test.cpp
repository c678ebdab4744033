#include "pad/pad-entry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sample-pads.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

using Effect = PadEntry::Effect;

std::string textOf(PadEntry* entry) {
    Bytes bytes(entry->text().size() * TypedText::kCharacterSize);
    entry->text().encode(bytes.data());
    std::string result;
    for (std::size_t i = 0; i < bytes.size(); i += TypedText::kCharacterSize) {
        result += static_cast<char>(bytes[i]);
    }
    return result;
}

class EntryOn {
public:
    explicit EntryOn(const std::vector<SampleImage>& images, PadRules rules = {true, false}, std::size_t completeAt = 0)
        : images_(images), pad_(padImages(images), rules, &remarks_), entry_(pad_, completeAt) {}

    Effect press(const std::string& keys) {
        Effect effect = Effect::Nothing;
        for (const char key : keys) {
            effect = entry_.press(code(key));
        }
        return effect;
    }

    // The images that are drawn, in order.
    std::vector<std::string> drawn() const {
        std::vector<std::string> result;
        for (const Drawing& drawing : entry_.drawings()) {
            result.push_back(images_[drawing.image].id);
        }
        return result;
    }

    std::string focused() const {
        for (const std::string& id : drawn()) {
            if (id.find(".focus") != std::string::npos) {
                return id;
            }
        }
        return "";
    }

    std::vector<Rect> dots() const {
        std::vector<Rect> result;
        for (const Drawing& drawing : entry_.drawings()) {
            if (images_[drawing.image].id.find("mask") != std::string::npos) {
                result.push_back(drawing.place);
            }
        }
        return result;
    }

    PadEntry* entry() { return &entry_; }
    std::string text() { return textOf(&entry_); }
    const Pad& pad() const { return pad_; }
    const std::vector<std::string>& remarks() const { return remarks_; }

private:
    static std::uint32_t code(char key) {
        switch (key) {
            case 'u':
                return VAULTPAD_TA_KEY_UP;
            case 'd':
                return VAULTPAD_TA_KEY_DOWN;
            case 'l':
                return VAULTPAD_TA_KEY_LEFT;
            case 'r':
                return VAULTPAD_TA_KEY_RIGHT;
            default:
                return VAULTPAD_TA_KEY_RETURN;
        }
    }

    std::vector<SampleImage> images_;
    std::vector<std::string> remarks_;
    Pad pad_;
    PadEntry entry_;
};

std::vector<SampleImage> keyImages(const std::string& stem, Rect place) {
    return {{stem + ".normal", place, {}}, {stem + ".focus", place, {}}};
}

std::vector<SampleImage> joined(const std::vector<std::vector<SampleImage>>& parts) {
    std::vector<SampleImage> result;
    for (const auto& part : parts) {
        result.insert(result.end(), part.begin(), part.end());
    }
    return result;
}

std::vector<SampleImage> twoPages() {
    return joined({{{"background", {0, 0, 100, 40}, {}}},
                   keyImages("key.space", {0, 20, 20, 10}),
                   keyImages("main.key.Shift_L.to-upper", {40, 20, 20, 10}),
                   keyImages("main.key.a", {0, 0, 20, 10}),
                   keyImages("main.key.b", {40, 0, 20, 10}),
                   keyImages("upper.key.Shift_L.to-main", {40, 20, 20, 10}),
                   keyImages("upper.key.A", {0, 0, 20, 10}),
                   keyImages("upper.key.B", {40, 0, 20, 10}),
                   {{"upper.label.shift", {80, 0, 10, 10}, {}}}});
}

TEST(PadEntry, OpensOnTheFirstKeyInReadingOrder) {
    EXPECT_EQ("key.1.focus", EntryOn(pinPad()).focused());
}

TEST(PadEntry, TypesWhatTheArrowsLeadTo) {
    EntryOn entry(pinPad());
    EXPECT_EQ(Effect::Changed, entry.press(kType2580));
    EXPECT_EQ("2580", entry.text());
}

TEST(PadEntry, TakesTheLastCharacterBackAndClearsAll) {
    EntryOn entry(pinPad());
    entry.press("!!!dddrr");
    EXPECT_EQ("key.BackSpace.focus", entry.focused());
    EXPECT_EQ(Effect::Changed, entry.press("!"));
    EXPECT_EQ("11", entry.text());
    EXPECT_EQ(Effect::Changed, entry.press("ll!"));
    EXPECT_EQ("", entry.text());
}

TEST(PadEntry, DoesNothingWhereThereIsNothingToChange) {
    EntryOn entry(pinPad());
    EXPECT_EQ(Effect::Nothing, entry.press("u"));
    EXPECT_EQ(Effect::Nothing, entry.press("ddd!"));  // Clear
    EXPECT_EQ(Effect::Nothing, entry.press("rr!"));   // BackSpace
    EXPECT_EQ(Effect::Nothing, entry.press("d!"));    // Return without text
    EXPECT_EQ(Effect::Nothing, entry.press("l!"));    // Tab types nothing
}

TEST(PadEntry, CompletesOnReturnAndKeepsTheTextForTheCaller) {
    EntryOn entry(pinPad());
    entry.press(kType2580);
    entry.press("dr");
    EXPECT_TRUE(entry.entry()->returnCompletes());
    EXPECT_EQ(Effect::Completed, entry.press("!"));
    EXPECT_EQ("2580", entry.text());
}

TEST(PadEntry, CompletesByItselfAtTheAnnouncedNumberOfDigits) {
    EntryOn entry(pinPad(), {true, false}, 3);
    EXPECT_EQ(Effect::Changed, entry.press("!!"));
    EXPECT_TRUE(entry.entry()->returnCompletes());
    EXPECT_EQ(Effect::Completed, entry.press("!"));
    EXPECT_EQ("111", entry.text());
}

TEST(PadEntry, CancelsWithoutKeepingTheText) {
    EntryOn entry(pinPad());
    entry.press("!dddd");
    EXPECT_EQ("key.Cancel.focus", entry.focused());
    EXPECT_EQ(Effect::Cancelled, entry.press("!"));
    EXPECT_EQ("", entry.text());
}

TEST(PadEntry, TakesFortyCharactersAndNoMore) {
    EntryOn entry(pinPad());
    EXPECT_EQ(Effect::Changed, entry.press(std::string(40, '!')));
    EXPECT_EQ(Effect::Nothing, entry.press("!"));
    EXPECT_EQ(std::string(40, '1'), entry.text());
}

TEST(PadEntry, ShowsADotForEachCharacterAsLongAsItFitsIntoTheInput) {
    EntryOn entry(pinPad());
    EXPECT_TRUE(entry.dots().empty());
    entry.press("!!");
    EXPECT_EQ((std::vector<Rect>{{5, 7, 8, 8}, {13, 7, 8, 8}}), entry.dots());
    entry.press("!!!!!");
    EXPECT_EQ(4u, entry.dots().size());
}

TEST(PadEntry, LetsTheDotsGrowToTheLeftInAReversedLayout) {
    std::vector<SampleImage> images = pinPad();
    images[2].place.x = 4 + 4 * 8 + 3 - 8 - 1;
    EntryOn entry(images, {true, true});
    entry.press("!!!!!!");
    EXPECT_EQ((std::vector<Rect>{{30, 7, 8, 8}, {22, 7, 8, 8}, {14, 7, 8, 8}, {6, 7, 8, 8}}), entry.dots());
}

TEST(PadEntry, DrawsBackgroundInputLabelsKeysAndDotsInThisOrder) {
    std::vector<SampleImage> images = joined({keyImages("key.1", {0, 0, 9, 9}),
                                              {{"mask", {0, 20, 2, 2}, {}},
                                               {"label.a", {0, 40, 2, 2}, {}},
                                               {"input", {0, 20, 9, 9}, {}},
                                               {"background", {0, 0, 50, 50}, {}}}});
    EntryOn entry(images);
    entry.press("!");
    EXPECT_EQ((std::vector<std::string>{"background", "input", "label.a", "key.1.focus", "mask"}), entry.drawn());
}

TEST(PadEntry, OpensOnThePageMainAndShowsTheKeysOfEveryPageToo) {
    EntryOn entry(twoPages(), {});
    EXPECT_EQ("main.key.a.focus", entry.focused());
    const std::vector<std::string> drawn = entry.drawn();
    EXPECT_EQ(1, std::count(drawn.begin(), drawn.end(), "key.space.normal"));
    EXPECT_EQ(0, std::count(drawn.begin(), drawn.end(), "upper.label.shift"));
}

TEST(PadEntry, ChangesThePageAndKeepsTheFocusInItsPlace) {
    EntryOn entry(twoPages(), {});
    entry.press("r");
    EXPECT_EQ(Effect::Changed, entry.press("d!"));
    EXPECT_EQ("upper.key.Shift_L.to-main.focus", entry.focused());
    entry.press("u!d!u!");
    EXPECT_EQ("main.key.b.focus", entry.focused());
    EXPECT_EQ("Bb", entry.text());
}

TEST(PadEntry, MovesTheFocusToTheNearestKeyWhenItsPlaceIsEmptyOnTheNewPage) {
    EntryOn entry(
        joined({keyImages("main.key.Shift_L.to-upper", {40, 20, 20, 10}), keyImages("main.key.a", {0, 0, 20, 10}),
                keyImages("upper.key.A", {0, 0, 20, 10}), keyImages("upper.key.B", {60, 20, 20, 10})}),
        {});
    entry.press("d!");
    EXPECT_EQ("upper.key.B.focus", entry.focused());
}

TEST(PadEntry, StaysOnItsPageWhenTheTargetPageHasNoImages) {
    EntryOn entry(joined({keyImages("key.Shift_L.to-nowhere", {0, 0, 9, 9})}), {});
    EXPECT_EQ(Effect::Nothing, entry.press("!"));
    EXPECT_EQ(1u, entry.remarks().size());
}

TEST(PadEntry, StaysQuietOnAPadWithoutKeys) {
    EntryOn entry({{"background", {0, 0, 9, 9}, {}}});
    EXPECT_EQ(Effect::Nothing, entry.press("r"));
    EXPECT_EQ(Effect::Nothing, entry.press("!"));
}

TEST(Pad, LeavesOutImagesThatItCannotUseAndTellsWhich) {
    const Pad* pad = nullptr;
    EntryOn entry({{"background", {0, 0, 50, 50}, {}},
                   {"picture", {0, 0, 5, 5}, {}},
                   {"key.1.normal", {0, 0, 5, 5}, {}},
                   {"key.2.normal", {10, 0, 5, 5}, {}},
                   {"key.2.focus", {10, 0, 6, 5}, {}}});
    pad = &entry.pad();
    EXPECT_TRUE(pad->keys().empty());
    EXPECT_EQ(4u, entry.remarks().size());
    EXPECT_EQ((std::vector<std::string>{"background"}), entry.drawn());
}

TEST(Pad, TakesItsAreaFromTheBackgroundOrFromAllImages) {
    EXPECT_EQ((Rect{0, 0, 100, 40}), EntryOn(twoPages()).pad().area());
    EXPECT_EQ((Rect{3, 4, 30, 10}),
              EntryOn(joined({keyImages("key.1", {3, 4, 5, 5}), keyImages("key.2", {28, 9, 5, 5})})).pad().area());
}

}  // namespace
}  // namespace vaultpad::secureworld
