// Whoever dies, nothing is left behind and nobody hangs.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "client.h"
#include "processes.h"
#include "television.h"

extern char** environ;

namespace {

constexpr const char* kTaName = "vaultpad-ta";

// The plain client in one of its modes; killed and reaped when it goes.
class PlainClientProcess {
public:
    explicit PlainClientProcess(const std::string& mode) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            return;
        }
        output_ = ends[0];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        std::string path = VAULTPAD_PLAIN_CLIENT;
        std::string argument = mode;
        char* arguments[] = {path.data(), argument.data(), nullptr};
        if (posix_spawn(&pid_, path.c_str(), &actions, nullptr, arguments, environ) != 0) {
            pid_ = -1;
        }
        posix_spawn_file_actions_destroy(&actions);
        ::close(ends[1]);
    }
    ~PlainClientProcess() {
        if (pid_ > 0 && !reaped_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        ::close(output_);
    }
    PlainClientProcess(const PlainClientProcess&) = delete;
    PlainClientProcess& operator=(const PlainClientProcess&) = delete;

    pid_t pid() const { return pid_; }

    /* Waits for the client's next line; empty when it ended without one. */
    std::string line() {
        std::string text;
        char byte = 0;
        while (read(output_, &byte, 1) == 1 && byte != '\n') {
            text += byte;
        }
        return text;
    }

    /* Sends a signal and returns the wait status. */
    int end(int signal) {
        int status = 0;
        kill(pid_, signal);
        waitpid(pid_, &status, 0);
        reaped_ = true;
        return status;
    }

private:
    pid_t pid_ = -1;
    int output_ = -1;
    bool reaped_ = false;
};

class ClientSignals : public testing::TestWithParam<std::string> {};

TEST_P(ClientSignals, ClientThatNeverInitialisedEflStillDiesOfSigterm) {
    Television television;
    television.apply();
    PlainClientProcess client(GetParam());
    ASSERT_EQ("ready", client.line()) << television.log();
    const int status = client.end(SIGTERM);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(SIGTERM, WTERMSIG(status));
}

std::string momentName(const testing::TestParamInfo<std::string>& info) {
    return info.param;
}

INSTANTIATE_TEST_SUITE_P(Moments, ClientSignals, testing::Values("open", "closed"), momentName);

TEST(ClientHandlers, ClientKeepsItsOwnHandlersOverASession) {
    Television television;
    television.apply();
    PlainClientProcess client("handlers");
    EXPECT_EQ("handlers kept", client.line()) << television.log();
}

TEST(ClientDeath, KilledClientLeavesNoProcessBehind) {
    Television television;
    television.apply();
    PlainClientProcess client("open");
    ASSERT_EQ("ready", client.line()) << television.log();
    const std::vector<pid_t> children = childrenOf(client.pid());
    ASSERT_FALSE(childrenNamed(client.pid(), kTaName).empty());
    client.end(SIGKILL);
    for (const pid_t child : children) {
        EXPECT_TRUE(endsSoon(child)) << "process " << child << " outlives its client";
    }
}

TEST(TrustedApplicationDeath, NextKeyFailsAndReportsThePadAsClosed) {
    Television television;
    television.apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD));
    ASSERT_EQ(0, client.press("Right").result);
    const std::vector<pid_t> tas = childrenNamed(getpid(), kTaName);
    ASSERT_EQ(1u, tas.size());
    kill(tas.front(), SIGKILL);
    const EventResult event = client.press("Return");
    EXPECT_EQ(-1, event.result);
    EXPECT_EQ(1u, event.closed);
    EXPECT_EQ(0u, event.value);
    EXPECT_EQ(0, CsapiVPADclose());
}

TEST(TrustedApplicationDeath, NewSessionWorksAfterIt) {
    Television television;
    television.apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD, 1));
    kill(childrenNamed(getpid(), kTaName).front(), SIGKILL);
    ASSERT_EQ(-1, client.press("Return").result);
    ASSERT_EQ(0, CsapiVPADclose());
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD, 1));
    EXPECT_EQ(1u, client.press("Return").closed);
    EXPECT_EQ("1", client.decrypt());
}

TEST(TrustedApplicationDeath, OpeningFailsCleanlyWhenThereIsNoTrustedApplication) {
    Television television;
    television.set("secure-world", "executable", "/nonexistent/vaultpad-ta").apply();
    Client client;
    EXPECT_EQ(-1, client.open(VAULTPAD_TYPE_PINPAD));
    EXPECT_EQ(nullptr, app);
    EXPECT_NE(std::string::npos, television.log().find("To initialize tee client is failed, ret: -1"));
}

}  // namespace
