#include "pad/image-id.h"

#include <gtest/gtest.h>

#include <string>

#include "pad/key-action.h"

namespace vaultpad::secureworld {
namespace {

TEST(ImageId, ReadsEachKindOfItem) {
    EXPECT_EQ(ImageKind::Background, parseImageId("background")->kind);
    EXPECT_EQ(ImageKind::Input, parseImageId("input")->kind);
    EXPECT_EQ(ImageKind::Mask, parseImageId("mask")->kind);
    EXPECT_EQ(ImageKind::Label, parseImageId("label.Title-2_b")->kind);
    EXPECT_EQ(ImageKind::Key, parseImageId("key.5.normal")->kind);
}

TEST(ImageId, ReadsThePageBeforeAnItem) {
    EXPECT_EQ("", parseImageId("background")->page);
    EXPECT_EQ("main", parseImageId("main.background")->page);
    EXPECT_EQ("sym2", parseImageId("sym2.key.at.focus")->page);
}

TEST(ImageId, ReadsAKeysKeysymStateAndTargetPage) {
    const auto plain = parseImageId("key.BackSpace.focus");
    EXPECT_EQ("BackSpace", plain->keysym);
    EXPECT_TRUE(plain->focused);
    EXPECT_EQ("", plain->targetPage);
    const auto shift = parseImageId("main.key.Shift_L.to-upper.normal");
    EXPECT_EQ("Shift_L", shift->keysym);
    EXPECT_FALSE(shift->focused);
    EXPECT_EQ("upper", shift->targetPage);
}

class ForeignId : public testing::TestWithParam<const char*> {};

TEST_P(ForeignId, IsOutsideTheGrammar) {
    EXPECT_FALSE(parseImageId(GetParam()).has_value());
}

INSTANTIATE_TEST_SUITE_P(Ids, ForeignId,
                         testing::Values("", ".", "Background", "background.", ".background", "background.x", "main",
                                         "main.", "main.main.background", "Main.background", "2nd.background",
                                         "key.background", "mask.mask", "label", "label.", "label.2", "label.a.b",
                                         "label.a b", "key", "key.5", "key.5.pressed", "key..normal",
                                         "key.NoSuchKeysym.normal", "key.5.normal.focus", "key.5.to-.normal",
                                         "key.5.to-Main.normal", "key.5.to-key.normal", "key.5.upper.normal",
                                         "key.5.to-a.to-b.normal"));

KeyAction actionOf(const std::string& id, bool digitsOnly) {
    return actionOf(*parseImageId(id), digitsOnly);
}

TEST(ClipId, LeavesOutTheStateOfAKeyAndNothingElse) {
    EXPECT_EQ("key.1", clipIdOf("key.1.focus"));
    EXPECT_EQ("main.key.Shift_L.to-upper", clipIdOf("main.key.Shift_L.to-upper.normal"));
    EXPECT_EQ("label.normal", clipIdOf("label.normal"));
    EXPECT_EQ("no id.focus", clipIdOf("no id.focus"));
}

TEST(KeyAction, TypesTheCharacterThatTheKeysymStandsFor) {
    EXPECT_EQ(u'a', actionOf("key.a.normal", false).character);
    EXPECT_EQ(u'@', actionOf("key.at.normal", false).character);
    EXPECT_EQ(u' ', actionOf("key.space.normal", false).character);
    EXPECT_EQ(u'\u20ac', actionOf("key.EuroSign.normal", false).character);
    EXPECT_EQ(u'\uac00', actionOf("key.Uac00.normal", false).character);
}

TEST(KeyAction, TypesOnlyDigitsOnAPinPad) {
    using Kind = KeyAction::Kind;
    for (const char digit : std::string("0123456789")) {
        const KeyAction action = actionOf(std::string("key.") + digit + ".normal", true);
        EXPECT_EQ(Kind::Type, action.kind);
        EXPECT_EQ(static_cast<char16_t>(digit), action.character);
    }
    for (const char* id : {"key.a.normal", "key.at.normal", "key.space.normal", "key.U0665.normal"}) {
        EXPECT_EQ(Kind::Nothing, actionOf(id, true).kind) << id;
    }
}

TEST(KeyAction, TypesNoControlCharacterAndNothingBeyondOneUnit) {
    using Kind = KeyAction::Kind;
    for (const char* id : {"key.Tab.normal", "key.Delete.normal", "key.U1F600.normal", "key.Shift_L.normal"}) {
        EXPECT_EQ(Kind::Nothing, actionOf(id, false).kind) << id;
    }
}

TEST(KeyAction, FollowsTheTargetPageWhateverTheKeysymIs) {
    const KeyAction action = actionOf("key.a.to-upper.normal", true);
    EXPECT_EQ(KeyAction::Kind::ShowPage, action.kind);
    EXPECT_EQ("upper", action.page);
}

TEST(KeyAction, KnowsTheKeysThatEdit) {
    using Kind = KeyAction::Kind;
    EXPECT_EQ(Kind::TakeBack, actionOf("key.BackSpace.normal", true).kind);
    EXPECT_EQ(Kind::Clear, actionOf("key.Clear.normal", true).kind);
    EXPECT_EQ(Kind::Complete, actionOf("key.Return.normal", true).kind);
    EXPECT_EQ(Kind::Cancel, actionOf("key.Cancel.normal", true).kind);
    EXPECT_EQ(Kind::Cancel, actionOf("key.Escape.normal", true).kind);
}

}  // namespace
}  // namespace vaultpad::secureworld
