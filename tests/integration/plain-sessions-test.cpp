// The whole plain family in one process that never initialised EFL's windows: open, type, read, decrypt, close.
#include <Ecore_Evas.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "client.h"
#include "compositor/compositor-process.h"
#include "processes.h"
#include "television.h"
#include "wayland-remote.h"

namespace {

using vaultpad::compositor::CompositorProcess;
using vaultpad_demo::compositorBesideThisProgram;
using vaultpad_demo::makeScriptedRemote;
using vaultpad_demo::makeWaylandRemote;
using vaultpad_demo::RemoteControl;

constexpr int kKeyPressed = 2;
constexpr int kSessions = 200;

/* A window and what Elementary makes beside it, its cursor for one. */
std::size_t canvases() {
    Eina_List* const all = ecore_evas_ecore_evas_list_get();
    const std::size_t count = eina_list_count(all);
    eina_list_free(all);
    return count;
}

class PlainSessions : public testing::Test {
protected:
    PlainSessions() : compositor_(compositorBesideThisProgram()) { television_.apply(); }

    /* One session that types one digit; returns it as decrypted. */
    std::string session(RemoteControl& remote) {
        EXPECT_EQ(1, vault_pad_session());
        EXPECT_EQ(0, vault_pad_create(VAULTPAD_TYPE_PINPAD, 1));
        EXPECT_EQ(0, client_.setPublicKey()) << television_.log();
        while (is_vault_pad_close() == 0) {
            const std::string key = remote.next().value().name;
            const char* name = key.c_str();
            EXPECT_EQ(0, vault_pad_event(kKeyPressed, &name));
        }
        EXPECT_EQ(1, vault_pad_check_enc_len());
        std::string typed = client_.decrypt();
        EXPECT_EQ(0, vault_pad_close());
        return typed;
    }

    /* The compositor's view of this process. */
    std::string grabsOfThisProcess() {
        const std::vector<std::string> lines = compositor_.command("list");
        return lines.empty() ? "" : lines.back();
    }

    const std::string self_ = "client " + std::to_string(getpid());
    Television television_;
    CompositorProcess compositor_;
    Client client_;
};

TEST_F(PlainSessions, TwoHundredInOneClientAddUpToNothingButTheirWindows) {
    television_.set("log", "target", "none").set("secure-world", "log", "none").apply();
    std::vector<std::string> keys;
    for (int i = 0; i <= kSessions; ++i) {
        keys.insert(keys.end(), {"Right", "Return"});
    }
    const std::unique_ptr<RemoteControl> remote = makeWaylandRemote(makeScriptedRemote(keys), compositor_);
    ASSERT_EQ("2", session(*remote));
    const std::size_t descriptors = openDescriptors();
    const std::size_t canvasesOfOne = canvases();
    for (int i = 0; i < kSessions; ++i) {
        ASSERT_EQ("2", session(*remote)) << i;
    }
    EXPECT_EQ(canvasesOfOne * (1 + kSessions), canvases()) << "one window for each session stays";
    EXPECT_EQ(descriptors, openDescriptors());
    EXPECT_LE(zombiesOf(getpid()), 1u);
    // The compositor, and perhaps the last session's helper.
    EXPECT_LE(childrenOf(getpid()).size(), 2u);
    EXPECT_EQ(self_ + " grabs 0 unfocused", grabsOfThisProcess());
}

TEST_F(PlainSessions, KeysStayGrabbedAfterAStartUpThatFailedBehindTheGrabAndTheNextSessionTakesThemOver) {
    const std::unique_ptr<RemoteControl> remote = makeWaylandRemote(makeScriptedRemote({"Return"}), compositor_);
    television_.set("secure-world", "executable", "/nonexistent/vaultpad-ta").apply();
    ASSERT_EQ(1, vault_pad_session());
    EXPECT_EQ(-1, vault_pad_create(VAULTPAD_TYPE_PINPAD, 1));
    EXPECT_EQ(0, vault_pad_close());
    EXPECT_EQ(self_ + " grabs 58 unfocused", grabsOfThisProcess());
    Television whole;
    whole.apply();
    EXPECT_EQ("1", session(*remote));
    EXPECT_EQ(self_ + " grabs 0 unfocused", grabsOfThisProcess());
}

}  // namespace
