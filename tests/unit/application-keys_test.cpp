// vault_pad_event: forwarded keys, leaving keys, volume keys, and all others.
#include <cstring>

#include "application-fixture.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kKey = 2;

class KeysTest : public ApplicationTest {
protected:
    KeysTest() {
        writeLayout("normal/pinpad.xml");
        folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", "<audio/>");
        std::memset(&result, 0x33, sizeof(result));
        before = result;
    }

    void start() {
        application().vault_pad_init(1, 4, false);
        platform().clearJournal();
        platform().clearLog();
    }

    static Application& application() { return *Application::instance(); }

    int press(const char* name, int eventType = kKey) {
        return application().vault_pad_event(eventType, &name, &result);
    }

    void expectFlags(bool pressed, bool closed) {
        EXPECT_EQ(application().vault_pad_button_press(), pressed);
        EXPECT_EQ(application().is_vault_pad_close(), closed);
    }

    /* Makes both flags the opposite of what a key that is handled here leaves behind. */
    void clearFlagsByAnswer() {
        platform().answer = {0u, 1u, 0u, 0u, 0u};
        ASSERT_EQ(press("Up"), 0);
        expectFlags(false, true);
        platform().clearJournal();
        result = before;
    }

    AppResult result;
    AppResult before;
};

struct Forwarded : Named {
    std::uint32_t code;
};

}  // namespace

class ForwardedKey : public KeysTest, public testing::WithParamInterface<Forwarded> {};

TEST_P(ForwardedKey, IsSentWithItsEventTypeAndCode) {
    start();
    platform().answer = {1u, 0u, 0u, 0u, 0u};
    EXPECT_EQ(press(GetParam().name.c_str(), 7), 0);
    // The newest block of a key event is the answer, the request is the one before.
    const auto& blocks = platform().blocks;
    EXPECT_EQ(blocks[blocks.size() - 2]->written, (Values{7u, GetParam().code}));
    expectFlags(true, false);
}

INSTANTIATE_TEST_SUITE_P(, ForwardedKey,
                         testing::Values(Forwarded{"Return", 36}, Forwarded{"Up", 111}, Forwarded{"Left", 113},
                                         Forwarded{"Right", 114}, Forwarded{"Down", 116}),
                         CaseName());

TEST_F(KeysTest, ForwardedKeyTakesFlagsAndResultFromTheAnswer) {
    start();
    platform().answer = {0u, 1u, 1u, 1u, 42u, Bytes{9}, Bytes{8}};
    EXPECT_EQ(press("Return"), 0);
    expectFlags(false, true);
    EXPECT_EQ(result.ta_value, 42u);
    EXPECT_EQ(result.enc_key[0], 9);
    EXPECT_EQ(result.enc_data[0], 8);
}

TEST_F(KeysTest, FailedForwardingReturnsMinusOneAndKeepsTheFlags) {
    start();
    platform().fail("tzfw_core_invoke_event", 2);
    EXPECT_EQ(press("Return"), -1);
    expectFlags(true, false);
}

TEST_F(KeysTest, AnswerThatBreaksOffAfterTheFlagsHasSetThem) {
    start();
    platform().answer = {0u, 1u};
    EXPECT_EQ(press("Return"), -1);
    expectFlags(false, true);
}

class LeavingKey : public KeysTest, public testing::WithParamInterface<const char*> {};

TEST_P(LeavingKey, ClosesThePadAndZeroesThreeWordsOnly) {
    start();
    EXPECT_EQ(press(GetParam()), 0);
    expectFlags(true, true);
    AppResult expected = before;
    expected.enc_key_len = 0;
    expected.enc_data_len = 0;
    expected.ta_value = 0;
    EXPECT_EQ(std::memcmp(&result, &expected, sizeof(result)), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_P(LeavingKey, OfEventTypeThreeChangesNothing) {
    start();
    EXPECT_EQ(press(GetParam(), 3), 0);
    expectFlags(true, false);
    EXPECT_EQ(std::memcmp(&result, &before, sizeof(result)), 0);
}

INSTANTIATE_TEST_SUITE_P(, LeavingKey, testing::Values("XF86Back", "XF86Exit", "XF86PowerOff", "XF86LFDPowerOff"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(KeysTest, KeysAfterALeavingKeyAreStillProcessed) {
    start();
    press("XF86Back");
    platform().answer = {1u, 0u, 0u, 0u, 0u};
    EXPECT_EQ(press("Down"), 0);
    expectFlags(true, false);
}

class UnsupportedKey : public KeysTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnsupportedKey, IsLoggedPressesTheButtonAndUncloses) {
    start();
    clearFlagsByAnswer();
    platform().clearLog();
    EXPECT_EQ(press(GetParam()), 0);
    expectFlags(true, false);
    EXPECT_THAT(platform().errors(), ElementsAre("this key input is not supported : " + std::string(GetParam())));
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_EQ(std::memcmp(&result, &before, sizeof(result)), 0);
}

INSTANTIATE_TEST_SUITE_P(, UnsupportedKey,
                         testing::Values("Upper", "up", "U", "", "Return ", "XF86AudioRaiseVolume2", "XF86Audio",
                                         "XF86AudioMute"));

TEST_F(KeysTest, EventWithoutAKeyNameIsRefused) {
    start();
    EXPECT_EQ(press(nullptr), -1);
    EXPECT_EQ(application().vault_pad_event(kKey, nullptr, &result), -1);
    EXPECT_EQ(platform().errors().size(), 2u);
}

class VolumeTest : public KeysTest {
protected:
    void startWithGuide(int volume) {
        voiceDecision = 1;
        platform().television.volume = volume;
        start();
    }
};

class VolumeKey : public VolumeTest, public testing::WithParamInterface<const char*> {};

TEST_P(VolumeKey, OnlySetsTheFlagsWhileTheVoiceGuideIsOff) {
    start();
    clearFlagsByAnswer();
    EXPECT_EQ(press(GetParam()), 0);
    expectFlags(true, false);
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_P(VolumeKey, LogsAVolumeThatCannotBeReadAndSetsNone) {
    startWithGuide(50);
    platform().fail("sound_manager_get_master_volume");
    EXPECT_EQ(press(GetParam()), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("Failed to get master volume"));
    EXPECT_EQ(platform().count("sound_manager_set_master_volume"), 0);
    expectFlags(true, false);
}

TEST_P(VolumeKey, LogsAVolumeThatCannotBeSet) {
    startWithGuide(50);
    platform().fail("sound_manager_set_master_volume");
    EXPECT_EQ(press(GetParam()), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("Failed to set master volume"));
    EXPECT_EQ(platform().television.volume, 50);
}

INSTANTIATE_TEST_SUITE_P(, VolumeKey, testing::Values("XF86AudioRaiseVolume", "XF86AudioLowerVolume"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(VolumeTest, RaiseAndLowerMoveTheVolumeByOne) {
    startWithGuide(50);
    press("XF86AudioRaiseVolume");
    EXPECT_EQ(platform().television.volume, 51);
    press("XF86AudioLowerVolume");
    press("XF86AudioLowerVolume");
    EXPECT_EQ(platform().television.volume, 49);
}

TEST_F(VolumeTest, RaiseReachesOneHundredAndStaysThere) {
    startWithGuide(99);
    press("XF86AudioRaiseVolume");
    EXPECT_EQ(platform().television.volume, 100);
    press("XF86AudioRaiseVolume");
    EXPECT_EQ(platform().television.volume, 100);
    EXPECT_EQ(platform().count("sound_manager_set_master_volume"), 1);
}

TEST_F(VolumeTest, LowerReachesZeroAndStaysThere) {
    startWithGuide(1);
    press("XF86AudioLowerVolume");
    EXPECT_EQ(platform().television.volume, 0);
    press("XF86AudioLowerVolume");
    EXPECT_EQ(platform().television.volume, 0);
    EXPECT_EQ(platform().count("sound_manager_set_master_volume"), 1);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

}  // namespace vaultpad::test
