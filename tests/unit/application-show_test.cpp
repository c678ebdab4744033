// vault_pad_show, and the keys that a session grabs itself.
#include "application-fixture.h"
#include "exception.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ShowTest : public ApplicationTest {
protected:
    ShowTest() { writeLayout("normal/pinpad.xml"); }

    static Application& started(bool grabsKeys = false) {
        Application& application = *Application::instance();
        application.vault_pad_init(1, 4, grabsKeys);
        return application;
    }

    static void connectWayland() {
        vaultpad_test_efl.wayland_connected = true;
        vaultpad_test_efl.has_key_router = true;
    }
};

}  // namespace

TEST_F(ShowTest, KillsTheHelperOnlyOnce) {
    Application& application = started();
    application.vault_pad_show();
    application.vault_pad_show();
    Application::destroy();
    EXPECT_THAT(platform().callsOf("kill"), ElementsAre("kill(4242, SIGKILL)"));
}

TEST_F(ShowTest, DestroyKillsTheHelperOfAPadThatWasNeverShown) {
    started();
    Application::destroy();
    EXPECT_THAT(platform().callsOf("kill"), ElementsAre("kill(4242, SIGKILL)"));
}

TEST_F(ShowTest, SecondShowSendsNoImagesAgain) {
    Application& application = started();
    application.vault_pad_show();
    application.vault_pad_show();
    EXPECT_THAT(platform().events(), ElementsAre(5, 8, 0, 7, 1, 8, 7, 1));
}

TEST_F(ShowTest, FailedUploadIsLoggedAndThePadShownAllTheSame) {
    Application& application = started();
    platform().fail("tzfw_tui_create_context");
    application.vault_pad_show();
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_tui_create_context fail;;", "initRenderContext() fail",
                                                 "failed to send data to TA, ret: -1"));
    EXPECT_THAT(platform().events(), ElementsAre(5, 1));
    EXPECT_EQ(platform().count("kill"), 1);
}

TEST_F(ShowTest, FailedShowIsLogged) {
    Application& application = started();
    platform().fail("tzfw_core_invoke_event", 5);
    application.vault_pad_show();
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_core_invoke_event() fail", "failed to show vaultpad, ret: -1"));
}

TEST_F(ShowTest, RefusedKeyRouterEndsTheStartUpBeforeTheSession) {
    started(true);
    EXPECT_THAT(platform().infos(), Contains("Init state: 0"));
    EXPECT_THAT(platform().errors(),
                ElementsAre("__wl2_display is NULL.", "cannot found keyrouter.", "Failed to initialize keyrouter."));
    EXPECT_EQ(platform().count("tzfw_core_initialize_context"), 0);
}

TEST_F(ShowTest, RetriesARefusedStartUpOnceWithItsGrabAndTheTypeOfTheSessionSoFar) {
    Application& application = started(true);
    connectWayland();
    platform().clearLog();
    // The type is not stored before the keys are grabbed, so that the retry has none and finds no layout.
    EXPECT_THROW(application.vault_pad_show(), exception::Exception);
    EXPECT_EQ(platform().count("KeyRouter_Set_KeyList"), 1);
    EXPECT_EQ(platform().count("tzfw_core_open_session"), 1);
    EXPECT_EQ(platform().errors().front(), "vault_pad_init failed; wrong ime type");
}

TEST_F(ShowTest, KeysThatCannotBeGrabbedEndTheStartUpAndFinalizeTheRouter) {
    connectWayland();
    platform().fail("KeyRouter_Set_KeyList");
    started(true);
    EXPECT_THAT(platform().errors(), ElementsAre("cant grab key", "Failed to grab all keys."));
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 1);
    EXPECT_EQ(platform().count("tzfw_core_initialize_context"), 0);
    Application::destroy();
    EXPECT_EQ(platform().count("KeyRouter_UnSet_KeyList"), 0);
}

TEST_F(ShowTest, KeysAreGrabbedBeforeTheSessionAndReleasedBeforeItIsClosed) {
    connectWayland();
    started(true).vault_pad_show();
    Application::destroy();
    Strings order;
    for (const std::string& call : platform().journal()) {
        for (const char* name :
             {"KeyRouter_Initialize", "KeyRouter_Set", "KeyRouter_UnSet", "KeyRouter_Finalize",
              "tzfw_core_open_session", "tzfw_core_close_session", "evas_object_show", "evas_object_hide", "kill"}) {
            if (call.compare(0, std::string(name).size(), name) == 0) {
                order.emplace_back(name);
            }
        }
    }
    EXPECT_THAT(order, ElementsAre("KeyRouter_Initialize", "KeyRouter_Set", "evas_object_show",
                                   "tzfw_core_open_session", "kill", "KeyRouter_UnSet", "evas_object_hide",
                                   "KeyRouter_Finalize", "tzfw_core_close_session"));
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(ShowTest, SessionWithoutGrabLeavesTheKeyRouterAlone) {
    connectWayland();
    started(false).vault_pad_show();
    Application::destroy();
    EXPECT_EQ(platform().count("KeyRouter_Initialize"), 0);
    EXPECT_EQ(platform().count("ecore_wl2_connected_display_get"), 0);
}

}  // namespace vaultpad::test
