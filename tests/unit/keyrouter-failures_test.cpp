// Key grabbing that fails, and calls out of order.
#include "keyrouter-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kAttempts = 10;

}  // namespace

TEST_F(KeyRouterTest, WithoutTheGlobalItFailsAfterOneLineAndWithoutAnAttempt) {
    vaultpad_test_efl.has_key_router = false;
    EXPECT_FALSE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().errors(), ElementsAre("cannot found keyrouter."));
    EXPECT_EQ(platform().count("KeyRouter_Initialize"), 0);
    EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0);
    EXPECT_FALSE(vault_pad_keyrouter_is_initialized());
}

TEST_F(KeyRouterTest, WithoutADisplayItSaysSoAndFindsNoRouter) {
    vaultpad_test_efl.wayland_connected = false;
    EXPECT_FALSE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().errors(), ElementsAre("__wl2_display is NULL.", "cannot found keyrouter."));
    EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0);
}

TEST_F(KeyRouterTest, NineFailedAttemptsAndASuccessSucceed) {
    platform().failCalls("KeyRouter_Initialize", 1, kAttempts - 1);
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_EQ(platform().count("KeyRouter_Initialize"), kAttempts);
    EXPECT_EQ(platform().count("usleep"), kAttempts - 1);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(KeyRouterTest, TenFailedAttemptsFailAfterAboutAHundredMilliseconds) {
    platform().failCalls("KeyRouter_Initialize", 1, kAttempts + 5, 0);
    EXPECT_FALSE(vault_pad_keyrouter_initialize());
    EXPECT_EQ(platform().count("KeyRouter_Initialize"), kAttempts);
    EXPECT_EQ(platform().callsOf("usleep"), Strings(kAttempts, "usleep(10000)"));
    EXPECT_THAT(platform().errors(), ElementsAre("KeyRouter initialization is failed!!!!"));
    EXPECT_EQ(vaultpad_test_efl.windows, 0);
    EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0);
}

TEST_F(KeyRouterTest, WindowWithoutACanvasIsLoggedAndTheSetUpGoesOn) {
    vaultpad_test_efl.window_has_canvas = false;
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().errors(), ElementsAre("__evas is NULL."));
    vault_pad_keyrouter_grab();
    EXPECT_THAT(platform().callsOf("KeyRouter_Set_KeyList"), ElementsAre("KeyRouter_Set_KeyList(null)"));
}

TEST_F(KeyRouterTest, KeysThatCannotBeListedFailAndUndoNothing) {
    platform().fail("KeyRouter_Add_All_Key", 1, 0);
    EXPECT_FALSE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().errors(), ElementsAre("Failed to add all key."));
    EXPECT_EQ(platform().count("KeyRouter_Remove_Key"), 0);
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 0);
    EXPECT_EQ(vaultpad_test_efl.windows, 1);
    EXPECT_FALSE(vault_pad_keyrouter_is_initialized());
    EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0);
}

TEST_F(KeyRouterTest, ResultsOfResetAndRemoveAreIgnored) {
    platform().fail("KeyRouter_Reset_KeyList");
    platform().failCalls("KeyRouter_Remove_Key", 1, 2);
    EXPECT_TRUE(vault_pad_keyrouter_initialize());
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(KeyRouterTest, GrabBeforeInitializeIsRefused) {
    EXPECT_FALSE(vault_pad_keyrouter_grab());
    EXPECT_THAT(platform().errors(), ElementsAre("cant grab"));
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(KeyRouterTest, GrabThatIsRefusedShowsNoWindow) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    platform().fail("KeyRouter_Set_KeyList", 1, 0);
    EXPECT_FALSE(vault_pad_keyrouter_grab());
    EXPECT_THAT(platform().errors(), ElementsAre("cant grab key"));
    EXPECT_EQ(platform().count("evas_object_show"), 0);
    EXPECT_TRUE(vault_pad_keyrouter_is_initialized());
}

TEST_F(KeyRouterTest, UngrabAndFinalizeBeforeInitializeDoNothing) {
    vault_pad_keyrouter_ungrab();
    vault_pad_keyrouter_finalize();
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(KeyRouterTest, GrabAfterFinalizeIsRefused) {
    ASSERT_TRUE(vault_pad_keyrouter_initialize());
    vault_pad_keyrouter_finalize();
    EXPECT_FALSE(vault_pad_keyrouter_grab());
    EXPECT_THAT(platform().errors(), ElementsAre("cant grab"));
}

}  // namespace vaultpad::test
