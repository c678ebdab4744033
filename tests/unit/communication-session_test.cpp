#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using communication::TeeClient;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kSetUuid = "tzfw_core_set_uuid(6f1d3c52-8a47-4be9-9c21-5e770bd438f6)";

class ClosedTeeClientTest : public PlatformTest {
protected:
    TeeClient client;
};

}  // namespace

TEST_F(ClosedTeeClientTest, InitNamesTheTrustedApplicationAndOpensTheSession) {
    EXPECT_EQ(client.init(), 0);
    EXPECT_THAT(platform().journal(),
                ElementsAre("tzfw_core_initialize_context(out)", kSetUuid, "tzfw_core_open_session()"));
    EXPECT_TRUE(platform().sessionOpen);
    EXPECT_THAT(platform().log(), IsEmpty());
    client.exit();
}

TEST_F(ClosedTeeClientTest, InitOnAnOpenSessionReturnsZeroWithoutTouchingThePlatform) {
    ASSERT_EQ(client.init(), 0);
    platform().clearJournal();
    EXPECT_EQ(client.init(), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
    client.exit();
}

TEST_F(ClosedTeeClientTest, ExitBeforeInitCallsNothing) {
    EXPECT_EQ(client.exit(), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().infos(), ElementsAre("called;"));
}

TEST_F(ClosedTeeClientTest, ExitClosesTheSessionThenTheContextThenTheTrustedUi) {
    ASSERT_EQ(client.init(), 0);
    ASSERT_EQ(client.init_render_context(), 0);
    platform().clearJournal();
    EXPECT_EQ(client.exit(), 0);
    EXPECT_THAT(platform().journal(),
                ElementsAre("tzfw_core_close_session()", "tzfw_core_finalize_context()", "tzfw_tui_release_context()"));
}

TEST_F(ClosedTeeClientTest, ExitWithoutATrustedUiReleasesNone) {
    ASSERT_EQ(client.init(), 0);
    platform().clearJournal();
    client.exit();
    EXPECT_THAT(platform().journal(), ElementsAre("tzfw_core_close_session()", "tzfw_core_finalize_context()"));
}

TEST_F(ClosedTeeClientTest, ASecondExitCallsNothing) {
    ASSERT_EQ(client.init(), 0);
    client.exit();
    platform().clearJournal();
    EXPECT_EQ(client.exit(), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(ClosedTeeClientTest, ASessionOpensAgainAfterExit) {
    ASSERT_EQ(client.init(), 0);
    client.exit();
    EXPECT_EQ(client.init(), 0);
    EXPECT_EQ(client.show(), 0);
    client.exit();
}

TEST_F(ClosedTeeClientTest, ExitGoesOnWhenTheSessionCannotBeClosed) {
    ASSERT_EQ(client.init(), 0);
    platform().fail("tzfw_core_close_session");
    EXPECT_EQ(client.exit(), 0);
    EXPECT_EQ(platform().count("tzfw_core_finalize_context"), 1);
}

struct InitFailure : Named {
    const char* function;
    const char* message;
    Strings journal;
};

class FailingInit : public ClosedTeeClientTest, public testing::WithParamInterface<InitFailure> {};

TEST_P(FailingInit, IsLoggedFinalizesWhatWasMadeAndLeavesTheSessionClosed) {
    platform().fail(GetParam().function);
    EXPECT_EQ(client.init(), -1);
    EXPECT_EQ(platform().journal(), GetParam().journal);
    EXPECT_THAT(platform().errors(), ElementsAre(GetParam().message));
    platform().clearJournal();
    EXPECT_EQ(client.exit(), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_P(FailingInit, MayBeTriedAgain) {
    platform().fail(GetParam().function);
    ASSERT_EQ(client.init(), -1);
    EXPECT_EQ(client.init(), 0);
    client.exit();
}

INSTANTIATE_TEST_SUITE_P(, FailingInit,
                         testing::Values(InitFailure{"Context",
                                                     "tzfw_core_initialize_context",
                                                     "tzfw_core_initialize_context() fail",
                                                     {"tzfw_core_initialize_context(out)"}},
                                         InitFailure{"Uuid",
                                                     "tzfw_core_set_uuid",
                                                     "Failed call tzfw_core_set_uuid",
                                                     {"tzfw_core_initialize_context(out)", kSetUuid,
                                                      "tzfw_core_finalize_context()"}},
                                         InitFailure{"Session",
                                                     "tzfw_core_open_session",
                                                     "Failed tzfw_core_open_session()",
                                                     {"tzfw_core_initialize_context(out)", kSetUuid,
                                                      "tzfw_core_open_session()", "tzfw_core_finalize_context()"}}),
                         CaseName());

TEST_F(ClosedTeeClientTest, LogLinesNameTheirFileFunctionAndLine) {
    client.exit();
    ASSERT_EQ(platform().log().size(), 1u);
    const LogLine line = platform().log().front();
    EXPECT_EQ(line.tag, "VAULTPAD_CA");
    EXPECT_EQ(line.file(), "tee-client.cpp");
    EXPECT_EQ(line.function(), "exit");
    EXPECT_GT(line.line(), 0);
    EXPECT_EQ(line.text, "tee-client.cpp: exit(" + std::to_string(line.line()) + ") > \033[01;32;40mcalled;\033[0m");
}

TEST_F(ClosedTeeClientTest, AFinalizedContextIsNotUsedByLaterCommands) {
    platform().fail("tzfw_core_open_session");
    ASSERT_EQ(client.init(), -1);
    EXPECT_EQ(client.show(), -1);
    EXPECT_THAT(platform().events(), IsEmpty());
}

}  // namespace vaultpad::test
