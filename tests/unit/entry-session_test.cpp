// What the entry points do without a session and without the privilege.
#include <algorithm>
#include <cstring>
#include <functional>

#include "application-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoSession = "[vaultpad]: No VaultPad session was started";

struct EntryPoint : Named {
    std::function<int()> call;
    int withoutSession;
};

int keyEvent(int (*function)(int, void*)) {
    const char* name = "Return";
    return function(2, &name);
}

const EntryPoint kGated[] = {
    {{"vault_pad_create"}, [] { return vault_pad_create(1, 0); }, -1},
    {{"vault_pad_params_set"}, [] { return vault_pad_params_set(0, 0, nullptr, 0, 0, nullptr, 0); }, -1},
    {{"vault_pad_close"}, [] { return vault_pad_close(); }, -1},
};

const EntryPoint kUngated[] = {
    {{"is_vault_pad_close"}, [] { return is_vault_pad_close(); }, 0},
    {{"vault_pad_button_press"}, [] { return vault_pad_button_press(); }, 0},
    {{"vaullt_pad_event"}, [] { return keyEvent(vaullt_pad_event); }, -1},
    {{"vault_pad_check_enc_len"}, [] { return vault_pad_check_enc_len(); }, -1},
};

std::vector<EntryPoint> all() {
    std::vector<EntryPoint> entries(std::begin(kGated), std::end(kGated));
    entries.insert(entries.end(), std::begin(kUngated), std::end(kUngated));
    return entries;
}

}  // namespace

class WithoutSession : public ApplicationTest, public testing::WithParamInterface<EntryPoint> {};

TEST_P(WithoutSession, EntryPointIsLoggedUnderItsNameAndRefused) {
    std::memset(&app_data, 0x44, sizeof(app_data));
    const AppResult before = app_data;
    EXPECT_EQ(GetParam().call(), GetParam().withoutSession);
    ASSERT_EQ(platform().log().size(), 1u);
    const LogLine line = platform().log().front();
    EXPECT_EQ(line.tag, "VPAD");
    EXPECT_EQ(line.priority, 6);
    EXPECT_EQ(line.file(), "vaultpad.cpp");
    EXPECT_EQ(line.function(), GetParam().name);
    EXPECT_EQ(line.message(), kNoSession);
    EXPECT_EQ(std::memcmp(&app_data, &before, sizeof(before)), 0);
    EXPECT_EQ(app, nullptr);
}

INSTANTIATE_TEST_SUITE_P(, WithoutSession, testing::ValuesIn(all()), CaseName());

class WithoutPrivilege : public ApplicationTest, public testing::WithParamInterface<EntryPoint> {};

TEST_P(WithoutPrivilege, GatedEntryPointReturnsMinusOneBeforeItLooksForASession) {
    platform().television.privilegeAnswer = 0;
    EXPECT_EQ(GetParam().call(), -1);
    EXPECT_THAT(platform().log(), IsEmpty());
    EXPECT_EQ(platform().count("cynara_check"), 1);
}

INSTANTIATE_TEST_SUITE_P(, WithoutPrivilege, testing::ValuesIn(kGated), CaseName());

class WithoutGate : public ApplicationTest, public testing::WithParamInterface<EntryPoint> {};

TEST_P(WithoutGate, EntryPointAsksForNoPrivilege) {
    ASSERT_EQ(vault_pad_session(), 1);
    platform().clearJournal();
    GetParam().call();
    EXPECT_EQ(platform().count("cynara_initialize"), 0);
}

INSTANTIATE_TEST_SUITE_P(, WithoutGate, testing::ValuesIn(kUngated), CaseName());

class SessionTest : public ApplicationTest {};

TEST_F(SessionTest, BothNamesOfTheEventDoTheSameWithoutASession) {
    EXPECT_EQ(keyEvent(vault_pad_event), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(kNoSession));
}

TEST_F(SessionTest, SessionIsRefusedWithoutPrivilege) {
    platform().television.privilegeAnswer = 1;
    EXPECT_EQ(vault_pad_session(), 0);
    EXPECT_EQ(app, nullptr);
    EXPECT_THAT(platform().log(), IsEmpty());
    EXPECT_EQ(platform().count("ua_UI_orientation_get"), 0) << "a controller was made";
}

TEST_F(SessionTest, SessionMakesTheControllerAndPublishesIt) {
    EXPECT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(app, Application::instance());
    EXPECT_EQ(platform().infos().front(), "enter check_vpad_api_privilege success");
}

TEST_F(SessionTest, RepeatedSessionReturnsTheSameController) {
    ASSERT_EQ(vault_pad_session(), 1);
    Application* first = app;
    EXPECT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(app, first);
    EXPECT_EQ(platform().count("ua_UI_orientation_get"), 1);
}

TEST_F(SessionTest, FreshSessionIsOpenWithAPressedButton) {
    ASSERT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(is_vault_pad_close(), 0);
    EXPECT_EQ(vault_pad_button_press(), 1);
}

TEST_F(SessionTest, CloseEndsTheSessionAndKeepsTheResult) {
    ASSERT_EQ(vault_pad_session(), 1);
    app_data.enc_key_len = 7;
    EXPECT_EQ(vault_pad_close(), 0);
    EXPECT_EQ(app, nullptr);
    EXPECT_EQ(app_data.enc_key_len, 7u);
    EXPECT_EQ(vault_pad_close(), -1);
}

TEST_F(SessionTest, CloseWithoutPrivilegeKeepsTheSession) {
    ASSERT_EQ(vault_pad_session(), 1);
    platform().television.privilegeAnswer = 0;
    EXPECT_EQ(vault_pad_close(), -1);
    EXPECT_NE(app, nullptr);
}

TEST_F(SessionTest, CsapiEventWithoutASessionLeavesTheOutputsAlone) {
    unsigned int value = 5;
    unsigned int closed = 6;
    EXPECT_EQ(CsapiVPADevent("Return", &value, &closed), -1);
    EXPECT_EQ(value, 5u);
    EXPECT_EQ(closed, 6u);
    EXPECT_EQ(platform().log().front().function(), "CsapiVPADevent");
}

TEST_F(SessionTest, CsapiCreateWithoutPrivilegeLogsThatThereIsNoSession) {
    platform().television.privilegeAnswer = 0;
    EXPECT_EQ(CsapiVPADcreate(1, 0, 0, 0, nullptr, 0, 0, nullptr, 0), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(kNoSession));
    EXPECT_EQ(platform().log().front().function(), "CsapiVPADcreate");
}

TEST_F(SessionTest, CsapiCloseIsTheSameAsClose) {
    ASSERT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(CsapiVPADclose(), 0);
    EXPECT_EQ(app, nullptr);
    EXPECT_EQ(CsapiVPADclose(), -1);
}

}  // namespace vaultpad::test
