// The background helper process, with real processes.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "background-helper.h"
#include "platform-test.h"

namespace vaultpad::test {

namespace {

constexpr int kPollMilliseconds = 10;
constexpr int kPolls = 500;
constexpr char kStillHere = 'y';

class HelperTest : public PlatformTest {
protected:
    HelperTest() { libc().programInstead = {"/bin/sleep", "60"}; }
    ~HelperTest() override { reapUntilGone(-1); }

    /* Whether the process is a child of this one that nobody has waited for, ended or not. */
    static bool isOurs(pid_t pid) {
        siginfo_t info{};
        return waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0;
    }

    /* Reaps again and again, as later start-ups do, until the process is no child any more. */
    static bool reapUntilGone(pid_t pid) {
        for (int i = 0; i < kPolls; ++i) {
            reapBackgroundHelpers();
            if (pid == -1 || !isOurs(pid)) {
                return true;
            }
            usleep(kPollMilliseconds * 1000);
        }
        return false;
    }

    static void waitUntilEnded(pid_t pid) {
        siginfo_t info{};
        EXPECT_EQ(waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT), 0);
    }
};

}  // namespace

TEST_F(HelperTest, RunsAsAChildUntilItIsKilled) {
    int pid = startBackgroundHelper("numpad", "disconnect");
    ASSERT_GT(pid, 0);
    EXPECT_EQ(kill(pid, 0), 0);
    const pid_t helper = pid;
    killBackgroundHelper(pid);
    EXPECT_EQ(pid, -1);
    siginfo_t info{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(helper), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(info.si_code, CLD_KILLED);
    EXPECT_EQ(info.si_status, SIGKILL);
    EXPECT_TRUE(reapUntilGone(helper));
}

TEST_F(HelperTest, KilledHelperIsReapedByTheNextStart) {
    int first = startBackgroundHelper("numpad", "disconnect");
    const pid_t helper = first;
    killBackgroundHelper(first);
    waitUntilEnded(helper);
    int second = startBackgroundHelper("numpad", "disconnect");
    EXPECT_FALSE(isOurs(helper));
    const pid_t other = second;
    killBackgroundHelper(second);
    EXPECT_TRUE(reapUntilGone(other));
}

TEST_F(HelperTest, ReapingNeverWaitsForAHelperThatStillRuns) {
    int pid = startBackgroundHelper("numpad", "disconnect");
    const pid_t helper = pid;
    // Would not come back within a minute if it waited.
    reapBackgroundHelpers();
    EXPECT_EQ(kill(helper, 0), 0);
    killBackgroundHelper(pid);
    EXPECT_TRUE(reapUntilGone(helper));
}

TEST_F(HelperTest, OtherChildrenOfTheClientAreNotReaped) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(7);
    }
    waitUntilEnded(child);
    int pid = startBackgroundHelper("numpad", "disconnect");
    const pid_t helper = pid;
    killBackgroundHelper(pid);
    EXPECT_TRUE(reapUntilGone(helper));
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child) << "the client's child was taken away";
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(HelperTest, NothingIsKilledWhenThereIsNoHelper) {
    libc().processesAreFake = true;
    int pid = -1;
    killBackgroundHelper(pid);
    EXPECT_EQ(platform().count("kill"), 0);
    EXPECT_EQ(pid, -1);
}

TEST_F(HelperTest, HelperIsKilledOnlyOnce) {
    libc().processesAreFake = true;
    int pid = 4242;
    killBackgroundHelper(pid);
    killBackgroundHelper(pid);
    EXPECT_EQ(platform().count("kill"), 1);
}

TEST_F(HelperTest, FailedForkIsMinusOne) {
    libc().processesAreFake = true;
    platform().fail("fork");
    EXPECT_EQ(startBackgroundHelper("numpad", "disconnect"), -1);
}

TEST_F(HelperTest, ChildGoesOnWhenTheExecutableIsMissing) {
    libc().programInstead = {"/nonexistent/helper"};
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    int pid = startBackgroundHelper("numpad", "disconnect");
    if (pid == 0) {
        // The second return of the same call, in the child.
        const ssize_t written = write(channel[1], &kStillHere, 1);
        _exit(written == 1 ? 0 : 1);
    }
    ASSERT_GT(pid, 0);
    close(channel[1]);
    char received = 0;
    EXPECT_EQ(read(channel[0], &received, 1), 1);
    EXPECT_EQ(received, kStillHere);
    close(channel[0]);
    const pid_t helper = pid;
    killBackgroundHelper(pid);
    EXPECT_TRUE(reapUntilGone(helper));
}

}  // namespace vaultpad::test
