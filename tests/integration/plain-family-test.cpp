// The family that grabs keys itself, on a host without a key router.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>

#include "client.h"
#include "television.h"

namespace {

// A sanitized build on a busy machine has room in it; a hang has not.
constexpr std::chrono::seconds kBound{10};

class PlainFamilyWithoutKeyRouter : public testing::Test {
protected:
    PlainFamilyWithoutKeyRouter() { television_.apply(); }

    int timesLogged(const std::string& text) const {
        const std::string log = television_.log();
        int count = 0;
        for (std::size_t at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) {
            ++count;
        }
        return count;
    }

    Television television_;
    Client client_;
};

TEST_F(PlainFamilyWithoutKeyRouter, CreateTriesTwiceLogsAndReturnsZero) {
    ASSERT_EQ(1, vault_pad_session());
    EXPECT_EQ(0, vault_pad_create(VAULTPAD_TYPE_PINPAD, 0));
    // Once by the start-up, once more by the show that finds it not done.
    EXPECT_EQ(2, timesLogged("cannot found keyrouter."));
    EXPECT_EQ(2, timesLogged("Failed to initialize keyrouter."));
    EXPECT_EQ(1, timesLogged("failed to send data to TA, ret: -1"));
    EXPECT_EQ(1, timesLogged("failed to show vaultpad, ret: -1"));
    EXPECT_EQ(0, vault_pad_close());
}

TEST_F(PlainFamilyWithoutKeyRouter, RefusesKeyAndEventsBecauseThereIsNoTrustedApplication) {
    ASSERT_EQ(1, vault_pad_session());
    ASSERT_EQ(0, vault_pad_create(VAULTPAD_TYPE_PINPAD, 0));
    EXPECT_EQ(-1, client_.setPublicKey());
    const char* key = "Return";
    EXPECT_EQ(-1, vault_pad_event(2, &key));
    key = "XF86Back";
    EXPECT_EQ(0, vault_pad_event(2, &key));
    EXPECT_EQ(1, is_vault_pad_close());
    EXPECT_EQ(1, vault_pad_button_press());
    EXPECT_EQ(0, vault_pad_close());
}

// The variable names a compositor that is not there, as after a session whose compositor crashed.
TEST_F(PlainFamilyWithoutKeyRouter, CreateFailsInBoundedTimeWhenTheCompositorIsGone) {
    setenv("WAYLAND_DISPLAY", "/nonexistent/wayland", 1);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_EQ(1, vault_pad_session());
    EXPECT_EQ(0, vault_pad_create(VAULTPAD_TYPE_PINPAD, 0));
    EXPECT_LT(std::chrono::steady_clock::now() - start, kBound);
    unsetenv("WAYLAND_DISPLAY");
    EXPECT_EQ(2, timesLogged("__wl2_display is NULL."));
    EXPECT_EQ(2, timesLogged("cannot found keyrouter."));
    ASSERT_EQ(0, vault_pad_close());
    ASSERT_EQ(0, client_.open(VAULTPAD_TYPE_PINPAD, 1));
    EXPECT_EQ(1u, client_.press("Return").closed);
}

TEST_F(PlainFamilyWithoutKeyRouter, TheOtherFamilyWorksAfterIt) {
    ASSERT_EQ(1, vault_pad_session());
    ASSERT_EQ(0, vault_pad_create(VAULTPAD_TYPE_PINPAD, 0));
    ASSERT_EQ(0, vault_pad_close());
    ASSERT_EQ(0, client_.open(VAULTPAD_TYPE_PINPAD, 1));
    EXPECT_EQ(1u, client_.press("Return").closed);
    EXPECT_EQ("1", client_.decrypt());
}

TEST(PrivilegeGate, DeniedClientGetsNoSession) {
    Television television;
    television.set("privilege", "default", "deny").apply();
    Client client;
    EXPECT_EQ(0, vault_pad_session());
    EXPECT_EQ(-1, vault_pad_create(VAULTPAD_TYPE_PINPAD, 0));
    EXPECT_EQ(-1, client.open(VAULTPAD_TYPE_PINPAD));
    EXPECT_EQ(-1, vault_pad_close());
    EXPECT_EQ(nullptr, app);
}

}  // namespace
