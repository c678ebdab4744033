// The creating entry points and key events through the entry points.
#include "application-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class CreateTest : public ApplicationTest {
protected:
    CreateTest() { writeLayout("normal/pinpad.xml"); }

    static int csapiCreate() {
        Bytes key = {1, 2, 3};
        return CsapiVPADcreate(1, 4, 0, 0, key.data(), 2, 1, nullptr, 0);
    }

    static void connectWayland() {
        vaultpad_test_efl.wayland_connected = true;
        vaultpad_test_efl.has_key_router = true;
    }
};

}  // namespace

TEST_F(CreateTest, PlainFamilyRunsWithGrabbedKeysFromSessionToClose) {
    connectWayland();
    ASSERT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(vault_pad_create(1, 4), 0);
    Bytes key = {1, 2, 3};
    EXPECT_EQ(vault_pad_params_set(5, 6, key.data(), 2, 1, nullptr, 0), 0);
    EXPECT_THAT(platform().events(), ElementsAre(5, 8, 0, 7, 1, 3));
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_PUBLIC_KEY).written, (Values{5u, 6u, 2u, 1u, key, 0u, Bytes{}}));
    EXPECT_EQ(vault_pad_close(), 0);
    EXPECT_EQ(platform().count("KeyRouter_Set_KeyList"), 1);
    EXPECT_EQ(platform().count("KeyRouter_UnSet_KeyList"), 1);
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 1);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(CreateTest, PlainFamilyWithoutKeyRouterLogsReturnsZeroAndCanBeClosed) {
    ASSERT_EQ(vault_pad_session(), 1);
    platform().clearJournal();
    EXPECT_EQ(vault_pad_create(1, 4), 0);
    // Started twice, once by create and once more by show; then show goes on without a session.
    EXPECT_THAT(platform().errors(),
                ElementsAre("__wl2_display is NULL.", "cannot found keyrouter.", "Failed to initialize keyrouter.",
                            "__wl2_display is NULL.", "cannot found keyrouter.", "Failed to initialize keyrouter.",
                            "tzfw_core_create_shared_memory fail;;", "initRenderContext() fail",
                            "failed to send data to TA, ret: -1", "tzfw_core_create_shared_memory() fail",
                            "failed to show vaultpad, ret: -1"));
    const Strings journal = platform().journal();
    // Each start asks twice: whether windows are worth bringing up, and for the display itself.
    EXPECT_THAT(Strings(journal.begin() + 3, journal.end()),
                ElementsAre("ecore_wl2_connected_display_get(null)", "ecore_wl2_connected_display_get(null)",
                            "ecore_wl2_connected_display_get(null)", "ecore_wl2_connected_display_get(null)",
                            "tzfw_tui_create_context()", "tzfw_tui_get_gp_info()",
                            "tzfw_core_create_shared_memory(0, 6144000, 3, 3)",
                            "tzfw_core_create_shared_memory(0, 102400, 3, 3)"));
    EXPECT_EQ(vault_pad_close(), 0);
    EXPECT_EQ(app, nullptr);
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 0);
    EXPECT_EQ(platform().count("fork"), 0);
}

TEST_F(CreateTest, PlainFamilyWhoseKeysCannotBeGrabbedReturnsZeroAndCanBeClosed) {
    connectWayland();
    platform().failCalls("KeyRouter_Set_KeyList", 1, 2);
    ASSERT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(vault_pad_create(1, 4), 0);
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 2) << "once for create and once for show";
    EXPECT_EQ(vault_pad_close(), 0);
    EXPECT_EQ(platform().count("KeyRouter_UnSet_KeyList"), 0);
}

TEST_F(CreateTest, PlainCreateLogsAnExceptionAndKeepsTheSession) {
    connectWayland();
    ASSERT_EQ(vault_pad_session(), 1);
    platform().fail("tzfw_core_open_session");
    EXPECT_EQ(vault_pad_create(1, 4), -1);
    EXPECT_NE(app, nullptr);
    EXPECT_THAT(platform().errors(), Contains("[vaultpad]: To initialize tee client is failed, ret: -1"));
    EXPECT_EQ(platform().log().back().function(), "vault_pad_create");
    EXPECT_EQ(platform().log().back().tag, "VPAD");
    EXPECT_EQ(vault_pad_close(), 0);
}

TEST_F(CreateTest, CsapiCreateOnAnExceptionClosesTheSessionItOpened) {
    platform().fail("tzfw_core_open_session");
    EXPECT_EQ(csapiCreate(), -1);
    EXPECT_EQ(app, nullptr);
    EXPECT_THAT(platform().errors(), Contains("[vaultpad]: To initialize tee client is failed, ret: -1"));
    EXPECT_EQ(csapiCreate(), 0) << "a new session can be opened";
}

TEST_F(CreateTest, CsapiCreateWhoseKeyIsRefusedKeepsTheSessionOpen) {
    platform().fail("tzfw_core_invoke_event", 6);
    EXPECT_EQ(csapiCreate(), -1);
    EXPECT_NE(app, nullptr);
    EXPECT_EQ(CsapiVPADclose(), 0);
}

TEST_F(CreateTest, CsapiCreateNeverGrabsKeys) {
    connectWayland();
    ASSERT_EQ(csapiCreate(), 0);
    EXPECT_EQ(platform().count("KeyRouter_Initialize"), 0);
}

TEST_F(CreateTest, ParametersReturnTheTrustedApplicationsRefusal) {
    ASSERT_EQ(csapiCreate(), 0);
    platform().fail("tzfw_core_invoke_event", 7);
    Bytes key = {1};
    EXPECT_EQ(vault_pad_params_set(0, 0, key.data(), 1, 0, nullptr, 0), -1);
}

TEST_F(CreateTest, CsapiEventReportsTheTrustedApplicationsWord) {
    ASSERT_EQ(csapiCreate(), 0);
    platform().answer = {1u, 1u, 1u, 1u, 1234u, Bytes{5}, Bytes{6}};
    unsigned int value = 99;
    unsigned int closed = 99;
    EXPECT_EQ(CsapiVPADevent("Return", &value, &closed), 0);
    EXPECT_EQ(value, 1234u);
    EXPECT_EQ(closed, 1u);
    EXPECT_EQ(platform().blocks[platform().blocks.size() - 2]->written, (Values{2u, 36u}));
}

TEST_F(CreateTest, CsapiEventOfAnOpenPadReportsNotClosed) {
    ASSERT_EQ(csapiCreate(), 0);
    platform().answer = {1u, 0u, 0u, 0u, 55u};
    unsigned int value = 99;
    unsigned int closed = 99;
    EXPECT_EQ(CsapiVPADevent("Up", &value, &closed), 0);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(closed, 0u);
}

TEST_F(CreateTest, FailedCsapiEventReportsThePadAsClosedSoThatALoopEnds) {
    ASSERT_EQ(csapiCreate(), 0);
    app_data.ta_value = 7;
    platform().fail("tzfw_core_invoke_event", 7);
    unsigned int value = 99;
    unsigned int closed = 99;
    EXPECT_EQ(CsapiVPADevent("Return", &value, &closed), -1);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(closed, 1u);
    EXPECT_EQ(is_vault_pad_close(), 0) << "the session's own flag is not touched";
}

class EventNamed : public CreateTest, public testing::WithParamInterface<int (*)(int, void*)> {};

TEST_P(EventNamed, ForwardsTypeAndKeyAndFillsTheExportedRecord) {
    ASSERT_EQ(csapiCreate(), 0);
    platform().answer = {0u, 1u, 1u, 1u, 8u, Bytes{5}, Bytes{6}};
    const char* name = "Left";
    EXPECT_EQ(GetParam()(9, &name), 0);
    EXPECT_EQ(platform().blocks[platform().blocks.size() - 2]->written, (Values{9u, 113u}));
    EXPECT_EQ(app_data.ta_value, 8u);
    EXPECT_EQ(vault_pad_button_press(), 0);
    EXPECT_EQ(is_vault_pad_close(), 1);
    EXPECT_EQ(vault_pad_check_enc_len(), 1);
}

TEST_P(EventNamed, LeavingKeyClosesThePadAndKeepsTheRecordsBytes) {
    ASSERT_EQ(csapiCreate(), 0);
    platform().answer = {0u, 0u, 2u, 1u, 8u, Bytes{5, 4}, Bytes{6}};
    const char* name = "Return";
    ASSERT_EQ(GetParam()(2, &name), 0);
    name = "XF86PowerOff";
    EXPECT_EQ(GetParam()(2, &name), 0);
    EXPECT_EQ(is_vault_pad_close(), 1);
    EXPECT_EQ(app_data.enc_key_len, 0u);
    EXPECT_EQ(app_data.enc_data_len, 0u);
    EXPECT_EQ(app_data.ta_value, 0u);
    EXPECT_EQ(app_data.enc_key[1], 4);
    EXPECT_EQ(app_data.enc_data[0], 6);
}

INSTANTIATE_TEST_SUITE_P(, EventNamed, testing::Values(vault_pad_event, vaullt_pad_event), [](const auto& tested) {
    return tested.index == 0 ? std::string("vault_pad_event") : std::string("vaullt_pad_event");
});

}  // namespace vaultpad::test
