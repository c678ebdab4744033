// The plain family with a compositor that routes keys: who gets them while the pad is up, and when they come back.
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "client-process.h"
#include "compositor/compositor-process.h"
#include "host/key-router-keys.h"
#include "processes.h"
#include "television.h"

namespace {

using vaultpad::compositor::CompositorProcess;
using vaultpad::host::remoteControlKeys;

constexpr const char* kTaName = "vaultpad-ta";

bool isPowerKey(const std::string& key) {
    return key == "XF86PowerOff" || key == "XF86LFDPowerOff";
}

/* Another application has the focus; the pad's client, which grabs, may come and go. */
class KeyGrabbing : public testing::Test {
protected:
    KeyGrabbing() : compositor_(VAULTPAD_COMPOSITOR) {
        television_.apply();
        setenv("WAYLAND_DISPLAY", compositor_.display().c_str(), 1);
        other_.emplace(std::vector<std::string>{VAULTPAD_OTHER_APPLICATION});
        EXPECT_EQ("ready", other_->line());
    }
    ~KeyGrabbing() override {
        other_.reset();
        pad_.reset();
        const int status = compositor_.stop();
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the compositor ended with " << status;
        unsetenv("WAYLAND_DISPLAY");
    }

    /* Opens the pad and gives the focus back to the other application. */
    void openPad(const std::string& digits = "1") {
        pad_.emplace(std::vector<std::string>{VAULTPAD_EFL_CLIENT, digits});
        ASSERT_EQ("open", pad_->line()) << television_.log();
        // Its own window, which comes up with its main loop, takes the focus.
        compositor_.waitFor("focus " + std::to_string(pad_->pid()));
        compositor_.command("focus " + std::to_string(other_->pid()));
    }

    static std::string line(const std::string& key, const char* change, pid_t client, const char* reason) {
        return "key " + key + " " + change + " " + std::to_string(client) + " " + reason;
    }

    /* Gives a command and returns who received keys for it, leaving out what else happened. */
    std::vector<std::string> keysFor(const std::string& command) {
        std::vector<std::string> lines = compositor_.command(command);
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const std::string& text) { return text.rfind("key ", 0) != 0; }),
                    lines.end());
        return lines;
    }

    /* The key goes to the client, its press and its release, and to nobody else. */
    void expectGoesTo(const std::string& key, pid_t client, const char* reason) {
        const std::vector<std::string> expected = {line(key, "pressed", client, reason),
                                                   line(key, "released", client, reason)};
        EXPECT_EQ(expected, keysFor("tap " + key));
    }

    /* Every key reaches the other application, and what arrived there is a press and a release. */
    void expectOtherHasItsKeysAgain() {
        for (const auto& key : remoteControlKeys()) {
            expectGoesTo(key.name, other_->pid(), "focus");
        }
        EXPECT_EQ("down 0", nextOf("down 0"));
        EXPECT_EQ("up 0", other_->line());
    }

    /* Skips what the other application received before. */
    std::string nextOf(const std::string& wanted) {
        std::string text;
        while (!(text = other_->line()).empty() && text != wanted) {
        }
        return text;
    }

    Television television_;
    CompositorProcess compositor_;
    std::optional<ClientProcess> other_;
    std::optional<ClientProcess> pad_;
};

TEST_F(KeyGrabbing, EveryKeyButThePowerKeysReachesThePadsClientOnly) {
    openPad("0");
    // The leaving keys end the pad's session: last.
    std::vector<std::string> keys;
    for (const auto& key : remoteControlKeys()) {
        keys.emplace_back(key.name);
    }
    std::stable_partition(keys.begin(), keys.end(), [](const std::string& key) { return key != "XF86Back"; });
    for (const std::string& key : keys) {
        if (isPowerKey(key)) {
            expectGoesTo(key, other_->pid(), "focus");
        } else {
            expectGoesTo(key, pad_->pid(), "grab");
        }
    }
    EXPECT_EQ("left", pad_->line());
    std::string first;
    while ((first = other_->line()) == "ready") {
    }
    EXPECT_EQ("down XF86PowerOff", first) << "the first key that the other application saw";
}

TEST_F(KeyGrabbing, KeysComeBackWhenThePadIsDone) {
    openPad();
    compositor_.command("tap Return");
    EXPECT_EQ("typed 1", pad_->line());
    EXPECT_EQ("closed", pad_->line());
    EXPECT_EQ(0, pad_->end(0));
    expectOtherHasItsKeysAgain();
}

TEST_F(KeyGrabbing, FourDigitsTypedWithWaylandKeysAreDecrypted) {
    openPad("4");
    for (const char* key : {"Right", "Return", "Down", "Return", "Down", "Return", "Down", "Return"}) {
        expectGoesTo(key, pad_->pid(), "grab");
    }
    EXPECT_EQ("typed 2580", pad_->line());
}

TEST_F(KeyGrabbing, KeysComeBackWhenThePadsClientIsKilled) {
    openPad();
    const pid_t pad = pad_->pid();
    pad_->end(SIGKILL);
    compositor_.waitFor("gone " + std::to_string(pad));
    expectOtherHasItsKeysAgain();
}

TEST_F(KeyGrabbing, KeyThatIsDownWhenThePadsClientIsKilledIsNotStuck) {
    openPad();
    const pid_t pad = pad_->pid();
    EXPECT_EQ(std::vector<std::string>{line("Up", "pressed", pad, "grab")}, keysFor("press Up"));
    pad_->end(SIGKILL);
    compositor_.waitFor("gone " + std::to_string(pad));
    EXPECT_EQ(std::vector<std::string>{line("Up", "released", 0, "nobody")}, keysFor("release Up"));
    expectOtherHasItsKeysAgain();
}

TEST_F(KeyGrabbing, KeyThatIsDownWhenThePadClosesIsReleasedWhereItWasPressed) {
    openPad();
    const pid_t pad = pad_->pid();
    compositor_.command("press Return");
    EXPECT_EQ("typed 1", pad_->line());
    EXPECT_EQ("closed", pad_->line());
    pad_->end(0);
    compositor_.waitFor("gone " + std::to_string(pad));
    // Released to the pad's client while it lived, to nobody after that; never to the other application.
    for (const std::string& told : keysFor("release Return")) {
        EXPECT_EQ(std::string::npos, told.find(" " + std::to_string(other_->pid()) + " ")) << told;
    }
    expectOtherHasItsKeysAgain();
}

TEST_F(KeyGrabbing, KeysStayGrabbedWhenTheTrustedApplicationIsKilledAndComeBackWhenTheClientCloses) {
    openPad("4");
    const std::vector<pid_t> tas = childrenNamed(pad_->pid(), kTaName);
    ASSERT_EQ(1u, tas.size());
    kill(tas.front(), SIGKILL);
    ASSERT_TRUE(endsSoon(tas.front()));
    expectGoesTo("Return", pad_->pid(), "grab");
    EXPECT_EQ("the trusted application is gone", pad_->line());
    EXPECT_EQ("closed", pad_->line());
    EXPECT_NE(0, pad_->end(0));
    expectOtherHasItsKeysAgain();
}

TEST_F(KeyGrabbing, OtherApplicationThatIsKilledLeavesNoKeyDown) {
    openPad();
    const pid_t gone = other_->pid();
    EXPECT_EQ(std::vector<std::string>{line("XF86PowerOff", "pressed", gone, "focus")}, keysFor("press XF86PowerOff"));
    other_->end(SIGKILL);
    compositor_.waitFor("gone " + std::to_string(gone));
    EXPECT_EQ(std::vector<std::string>{line("XF86PowerOff", "released", 0, "nobody")}, keysFor("release XF86PowerOff"));
    // The pad's client has the only window now: a power key that is not grabbed goes there by the focus.
    expectGoesTo("XF86PowerOff", pad_->pid(), "focus");
}

TEST_F(KeyGrabbing, SecondPadFindsTheKeysTaken) {
    openPad();
    ClientProcess second({VAULTPAD_EFL_CLIENT, "1"});
    EXPECT_EQ("the pad could not be opened", second.line());
    EXPECT_NE(std::string::npos, television_.log().find("Failed to grab all keys.")) << television_.log();
    expectGoesTo("Up", pad_->pid(), "grab");
}

}  // namespace
