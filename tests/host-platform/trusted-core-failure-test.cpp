/* Sessions that go wrong: trusted applications (TAs) that cannot be started, end, hang or answer nonsense. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <vaultpad-platform/trusted-core.h>

#include <chrono>
#include <fstream>
#include <string>

#include "trusted-core-fixture.h"

namespace {

using testing::HasSubstr;
using Clock = std::chrono::steady_clock;

/* Far below the time that an event may take by default, far above what a busy machine needs. */
constexpr std::chrono::seconds kQuickly{10};

class SessionFailureTest : public TrustedCoreFixture {
protected:
    void SetUp() override { start_ = Clock::now(); }

    void expectQuick() const { EXPECT_LT(Clock::now() - start_, kQuickly); }

    std::string logged() const { return contentOf(folder() / "log"); }

private:
    Clock::time_point start_;
};

TEST_F(SessionFailureTest, DoesNotOpenWithoutAUuid) {
    void* const context = tzfw_core_initialize_context(nullptr);
    EXPECT_NE(tzfw_core_open_session(context), 0);
    EXPECT_NE(tzfw_core_set_uuid(context, 1, 2, 3, nullptr), 0);
    EXPECT_NE(tzfw_core_open_session(context), 0);
    tzfw_core_finalize_context(context);
    EXPECT_THAT(logged(), HasSubstr("no UUID was set"));
}

TEST_F(SessionFailureTest, DoesNotOpenTwice) {
    EXPECT_EQ(open(), 0);
    EXPECT_NE(open(), 0);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0) << "the first session goes on";
}

TEST_F(SessionFailureTest, FailsForNullAndStaleContexts) {
    static constexpr uint8_t kClockSeqAndNode[8] = {};
    void* const stale = makeContext();
    tzfw_core_finalize_context(stale);
    for (void* const bad : {static_cast<void*>(nullptr), stale}) {
        EXPECT_NE(tzfw_core_set_uuid(bad, 1, 2, 3, kClockSeqAndNode), 0);
        EXPECT_NE(tzfw_core_open_session(bad), 0);
        EXPECT_NE(tzfw_core_invoke_event(bad, SCRIPTED_ACCEPT), 0);
        EXPECT_NE(tzfw_core_close_session(bad), 0);
        tzfw_core_finalize_context(bad);
    }
}

TEST_F(SessionFailureTest, HasNothingToInvokeOrCloseBeforeOpening) {
    EXPECT_NE(invoke(SCRIPTED_ACCEPT), 0);
    EXPECT_NE(tzfw_core_close_session(context_), 0);
}

TEST_F(SessionFailureTest, DoesNotOpenWithABadKeyFile) {
    problemsOf("[sound]\nvolume=bad\n");
    testing::internal::CaptureStderr();
    EXPECT_NE(open(), 0);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("the television's key file cannot be used"));
}

TEST_F(SessionFailureTest, SaysThatTheExecutableIsNotThere) {
    useTelevision("[log]\ntarget=log\n[secure-world]\nexecutable=/nowhere/ta\n");
    EXPECT_NE(open(), 0);
    EXPECT_EQ(logged(),
              "E/HOST_PLATFORM: the trusted application /nowhere/ta cannot be started: No such file or directory; see "
              "[secure-world] executable\n");
}

TEST_F(SessionFailureTest, SaysThatTheExecutableIsNone) {
    std::ofstream(folder() / "text") << "hello\n";
    useTelevision("[log]\ntarget=log\n[secure-world]\nexecutable=text\n");
    EXPECT_NE(open(), 0);
    EXPECT_THAT(logged(), HasSubstr("cannot be started: Permission denied"));
}

TEST_F(SessionFailureTest, SaysAtOnceThatTheTaEnded) {
    startTaThat(VAULTPAD_SCRIPTED_TA_EXITS);
    EXPECT_NE(open(), 0);
    expectQuick();
    EXPECT_THAT(logged(), HasSubstr("ended when the session was opened (exit status 7)"));
    EXPECT_TRUE(hasNoChild());
}

TEST_F(SessionFailureTest, DoesNotOpenWhenTheTaRefuses) {
    startTaThat(VAULTPAD_SCRIPTED_TA_REFUSES);
    EXPECT_NE(open(), 0);
    expectQuick();
    EXPECT_THAT(logged(), HasSubstr("refused when the session was opened"));
}

TEST_F(SessionFailureTest, DoesNotOpenWhenTheTaIsSilent) {
    useTa("timeout=1\n");
    startTaThat(VAULTPAD_SCRIPTED_TA_SILENT);
    EXPECT_NE(open(), 0);
    expectQuick();
    EXPECT_THAT(logged(), HasSubstr("did not answer in time when the session was opened"));
}

TEST_F(SessionFailureTest, MayBeOpenedAfterAFailedOpening) {
    startTaThat(VAULTPAD_SCRIPTED_TA_EXITS);
    EXPECT_NE(open(), 0);
    startTaThat("");
    EXPECT_EQ(open(), 0);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
}

TEST_F(SessionFailureTest, GoesOnAfterARefusedEvent) {
    ASSERT_EQ(open(), 0);
    EXPECT_NE(invoke(SCRIPTED_REFUSE), 0);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
    EXPECT_EQ(tzfw_core_close_session(context_), 0);
    EXPECT_EQ(logged(), "E/HOST_PLATFORM: the trusted application refused event 2\n");
}

class BrokenSessionTest : public SessionFailureTest, public testing::WithParamInterface<ScriptedOrder> {};

TEST_P(BrokenSessionTest, FailsAtOnceAndStaysBrokenUntilClosed) {
    ASSERT_EQ(open(), 0);
    block(100, {1});
    EXPECT_EQ(invoke(GetParam()), -1);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), -1);
    EXPECT_NE(open(), 0);
    EXPECT_EQ(tzfw_core_close_session(context_), -1);
    expectQuick();
    EXPECT_TRUE(hasNoChild());
    EXPECT_THAT(logged(), HasSubstr("during event " + std::to_string(GetParam())));
    EXPECT_EQ(open(), 0) << "closing cleared the way for a new session";
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
}

INSTANTIATE_TEST_SUITE_P(Orders, BrokenSessionTest,
                         testing::Values(SCRIPTED_DIE, SCRIPTED_EXIT, SCRIPTED_ANSWER_SHORT, SCRIPTED_ANSWER_LONG,
                                         SCRIPTED_ANSWER_WRONG_MAGIC, SCRIPTED_ANSWER_WRONG_KIND,
                                         SCRIPTED_ANSWER_WITH_DESCRIPTOR));

TEST_F(SessionFailureTest, GivesUpOnATaThatHangsAfterTheTelevisionsTime) {
    useTa("timeout=1\n");
    ASSERT_EQ(open(), 0);
    const Clock::time_point start = Clock::now();
    EXPECT_EQ(invoke(SCRIPTED_HANG), -1);
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(990));
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), -1);
    tzfw_core_close_session(context_);
    expectQuick();
    EXPECT_TRUE(hasNoChild());
    EXPECT_THAT(logged(), HasSubstr("did not answer in time during event 9"));
    EXPECT_THAT(logged(), HasSubstr("does not end and is killed"));
}

TEST_F(SessionFailureTest, KillsATaThatStaysWhenItsSessionIsClosed) {
    startTaThat(VAULTPAD_SCRIPTED_TA_STAYS);
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(tzfw_core_close_session(context_), 0);
    expectQuick();
    EXPECT_TRUE(hasNoChild());
}

TEST_F(SessionFailureTest, FailsAtOnceAndRaisesNoSignalWhenTheTaWentBetweenTwoEvents) {
    struct sigaction fatal = {};
    fatal.sa_handler = SIG_DFL; /* SIGPIPE would end this process */
    ASSERT_EQ(sigaction(SIGPIPE, &fatal, nullptr), 0);
    ASSERT_EQ(open(), 0);
    const uint32_t ta = ask(SCRIPTED_TELL_PROCESS, kProcessWords)[kProcessId];
    ASSERT_EQ(kill(static_cast<pid_t>(ta), SIGKILL), 0);
    siginfo_t ended = {};
    ASSERT_EQ(waitid(P_PID, ta, &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), -1);
    expectQuick();
}

}  // namespace
