// The compositor's commands, and the keyboard that it describes.
#include "compositor/command.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xkbcommon/xkbcommon.h>

#include <set>
#include <string>

#include "compositor/keymap.h"
#include "host/key-router-keys.h"

namespace {

using testing::HasSubstr;
using vaultpad::compositor::codeOf;
using vaultpad::compositor::Command;
using vaultpad::compositor::keymapText;
using vaultpad::compositor::parseCommand;
using vaultpad::host::RemoteControlKey;
using vaultpad::host::remoteControlKeys;

constexpr xkb_keycode_t kXkbOffset = 8;

TEST(CompositorCommand, NamesAKeyOrAClient) {
    EXPECT_EQ(parseCommand("press Up").kind, Command::Kind::kPress);
    EXPECT_EQ(parseCommand("release Up").kind, Command::Kind::kRelease);
    EXPECT_EQ(parseCommand("  tap   XF86LFDPowerOff  ").key, "XF86LFDPowerOff");
    EXPECT_EQ(parseCommand("focus 4711").client, 4711);
    EXPECT_EQ(parseCommand("list").kind, Command::Kind::kList);
    EXPECT_EQ(parseCommand("keys").kind, Command::Kind::kKeys);
}

TEST(CompositorCommand, IsNothingOnAnEmptyLineOrInAComment) {
    for (const char* line : {"", "   ", "# tap Up", "#"}) {
        EXPECT_EQ(parseCommand(line).kind, Command::Kind::kNone) << line;
    }
    EXPECT_EQ(parseCommand("tap Up # the first").key, "Up");
}

TEST(CompositorCommand, SaysWhatIsWrongAndWhatWouldBeRight) {
    const struct {
        const char* line;
        const char* mend;
    } cases[] = {{"jump", "write press NAME"},
                 {"tap", "tap NAME"},
                 {"tap Up Down", "tap NAME"},
                 {"press up", "'keys' lists"},
                 {"focus", "focus PID"},
                 {"focus 12x", "focus PID"},
                 {"focus -3", "focus PID"},
                 {"focus 99999999999", "focus PID"},
                 {"list all", "'list' stands alone"}};
    for (const auto& [line, mend] : cases) {
        const Command command = parseCommand(line);
        EXPECT_EQ(command.kind, Command::Kind::kWrong) << line;
        EXPECT_THAT(command.mistake, HasSubstr(mend)) << line;
    }
}

TEST(RemoteControlKeys, HaveEachNameAndEachCodeOnce) {
    std::set<std::string> names;
    std::set<uint32_t> codes;
    for (const RemoteControlKey& key : remoteControlKeys()) {
        names.insert(key.name);
        codes.insert(key.code);
        EXPECT_EQ(codeOf(key.name), key.code);
    }
    EXPECT_EQ(names.size(), remoteControlKeys().size());
    EXPECT_EQ(codes.size(), remoteControlKeys().size());
    EXPECT_EQ(codeOf("up"), 0u);
}

class KeymapTest : public testing::Test {
protected:
    KeymapTest()
        : context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)),
          keymap_(xkb_keymap_new_from_string(context_, keymapText().c_str(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                             XKB_KEYMAP_COMPILE_NO_FLAGS)),
          state_(keymap_ != nullptr ? xkb_state_new(keymap_) : nullptr) {}
    ~KeymapTest() override {
        xkb_state_unref(state_);
        xkb_keymap_unref(keymap_);
        xkb_context_unref(context_);
    }

    std::string nameOf(uint32_t code) const {
        char name[64] = "";
        xkb_keysym_get_name(xkb_state_key_get_one_sym(state_, code + kXkbOffset), name, sizeof(name));
        return name;
    }

    xkb_context* const context_;
    xkb_keymap* const keymap_;
    xkb_state* const state_;
};

TEST_F(KeymapTest, GivesTheForwardedAndLeavingKeysTheirNames) {
    ASSERT_NE(state_, nullptr);
    for (const char* name : {"Return", "Up", "Left", "Right", "Down", "XF86Back", "XF86PowerOff",
                             "XF86AudioRaiseVolume", "XF86AudioLowerVolume"}) {
        EXPECT_EQ(nameOf(codeOf(name)), name);
    }
}

TEST_F(KeymapTest, GivesEveryKeyASymbolOfItsOwn) {
    ASSERT_NE(state_, nullptr);
    std::set<std::string> symbols;
    for (const RemoteControlKey& key : remoteControlKeys()) {
        symbols.insert(nameOf(key.code));
    }
    EXPECT_EQ(symbols.count("NoSymbol"), 0u);
    EXPECT_EQ(symbols.size(), remoteControlKeys().size());
}

}  // namespace
