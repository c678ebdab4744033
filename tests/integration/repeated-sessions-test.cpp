// One client, many sessions: nothing may add up.
#include <gtest/gtest.h>
#include <unistd.h>

#include <utility>

#include "client.h"
#include "processes.h"
#include "television.h"

namespace {

constexpr int kSessions = 20;

bool runSession(Client& client, int type) {
    return client.open(type, 1) == 0 && client.press("Return").result == 0 && CsapiVPADclose() == 0;
}

TEST(RepeatedSessions, CollectNeitherDescriptorsNorProcesses) {
    Television television;
    television.apply();
    Client client;
    ASSERT_TRUE(runSession(client, VAULTPAD_TYPE_PINPAD));
    const std::size_t before = openDescriptors();
    for (int i = 0; i < kSessions; ++i) {
        ASSERT_TRUE(runSession(client, i % 2 == 0 ? VAULTPAD_TYPE_PINPAD : VAULTPAD_TYPE_KEYBOARD)) << i;
    }
    EXPECT_EQ(before, openDescriptors());
    // The helper of the last session may have died too late to be reaped without waiting.
    EXPECT_LE(zombiesOf(getpid()), 1u);
    EXPECT_LE(childrenOf(getpid()).size(), 1u);
}

TEST(RepeatedSessions, EachGetsItsOwnAnswer) {
    Television television;
    television.apply();
    Client client;
    const std::pair<const char*, const char*> typed[] = {{"Return", "1"}, {"Right,Return", "2"}, {"Down,Return", "4"}};
    for (const auto& [keys, text] : typed) {
        ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD, 1));
        client.pressAll(keys);
        EXPECT_EQ(text, client.decrypt());
        ASSERT_EQ(0, CsapiVPADclose());
    }
}

}  // namespace
