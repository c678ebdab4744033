// Whoever dies, nothing is left behind and nobody hangs.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "client-process.h"
#include "client.h"
#include "processes.h"
#include "television.h"

namespace {

constexpr const char* kTaName = "vaultpad-ta";

/* The plain client in one of its modes. */
class PlainClientProcess : public ClientProcess {
public:
    explicit PlainClientProcess(const std::string& mode) : ClientProcess({VAULTPAD_PLAIN_CLIENT, mode}) {}
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
