// Key grabbing that works.
#include "keyrouter-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

}  // namespace

TEST_F(KeyRouterTest, InitializeConnectsMakesTheHiddenWindowAndListsTheKeys) {
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    Strings expected = {"ecore_wl2_connected_display_get(null)", "KeyRouter_Initialize(17)"};
    for (const std::string& call : windowCalls()) {
        expected.push_back(call);
    }
    for (const char* call : {"KeyRouter_Reset_KeyList()", "KeyRouter_Add_All_Key(4)",
                             "KeyRouter_Remove_Key(XF86PowerOff, 4)", "KeyRouter_Remove_Key(XF86LFDPowerOff, 4)"}) {
        expected.emplace_back(call);
    }
    EXPECT_EQ(platform().journal(), expected);
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(KeyRouterTest, InitializeHoldsTheMainLoopLockThroughout) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(depths, ElementsAre(1, 1, 1));
    EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0);
}

TEST_F(KeyRouterTest, SecondInitializeLogsAndSucceedsAtOnce) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    platform().clearJournal();
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().infos(), ElementsAre("already init."));
}

TEST_F(KeyRouterTest, IsInitializedLogsItsState) {
    EXPECT_FALSE(vault_pad_keyrouter_is_initialized());
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_TRUE(vault_pad_keyrouter_is_initialized());
    EXPECT_THAT(platform().infos(), ElementsAre("Init state: 0", "Init state: 1"));
}

TEST_F(KeyRouterTest, GrabsEveryKeyButThePowerKeysAndShowsTheWindowOnTheMainLoop) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    platform().clearJournal();
    EXPECT_TRUE(vault_pad_keyrouter_grab());
    EXPECT_THAT(platform().grabbedKeys, UnorderedElementsAre("Return", "Up", "XF86Back"));
    EXPECT_THAT(platform().journal(), ElementsAre("KeyRouter_Set_KeyList(surface)", "evas_object_show(window)"));
    EXPECT_EQ(vaultpad_test_efl.main_loop_calls, 1);
}

TEST_F(KeyRouterTest, UngrabReleasesTheKeysAndHidesTheWindowOnTheMainLoop) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    ASSERT_TRUE(vault_pad_keyrouter_grab());
    platform().clearJournal();
    vault_pad_keyrouter_ungrab();
    EXPECT_THAT(platform().journal(), ElementsAre("KeyRouter_UnSet_KeyList(surface)", "evas_object_hide(window)"));
    EXPECT_EQ(vaultpad_test_efl.main_loop_calls, 2);
    EXPECT_TRUE(vault_pad_keyrouter_is_initialized());
}

TEST_F(KeyRouterTest, FinalizeLetsGoOfTheRouterOnly) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    platform().clearJournal();
    vault_pad_keyrouter_finalize();
    EXPECT_THAT(platform().journal(), ElementsAre("KeyRouter_Finalize()"));
    EXPECT_THAT(platform().infos(), ElementsAre("keyrouter finalizey"));
    EXPECT_FALSE(vault_pad_keyrouter_is_initialized());
}

TEST_F(KeyRouterTest, InitializeAfterFinalizeBuildsASecondWindow) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    vault_pad_keyrouter_finalize();
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_EQ(vaultpad_test_efl.windows, 2);
}

}  // namespace vaultpad::test
