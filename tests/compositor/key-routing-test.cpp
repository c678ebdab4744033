// Who receives a key, without Wayland.
#include "compositor/key-routing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using vaultpad::compositor::ClientId;
using vaultpad::compositor::KeyResult;
using vaultpad::compositor::KeyRouting;
using vaultpad::compositor::KeySink;
using vaultpad::compositor::Reason;
using vaultpad::compositor::SurfaceId;

/* Names what it is told: clients and surfaces are C strings. */
class Recorder : public KeySink {
public:
    void enter(ClientId client, SurfaceId surface) override {
        lines.push_back(name(client) + " enters " + name(surface));
    }
    void leave(ClientId client, SurfaceId surface) override {
        lines.push_back(name(client) + " leaves " + name(surface));
    }
    bool key(ClientId client, const std::string& key, bool pressed, Reason reason) override {
        if (client == deaf) {
            return false;
        }
        lines.push_back(name(client) + (pressed ? " +" : " -") + key +
                        (reason == Reason::kGrab    ? " grab"
                         : reason == Reason::kFocus ? " focus"
                                                    : " nobody"));
        return client != nullptr;
    }
    void focusChanged(ClientId) override {}

    std::vector<std::string> taken() { return std::exchange(lines, {}); }

    std::vector<std::string> lines;
    ClientId deaf = "no client";

private:
    static std::string name(const void* id) { return id == nullptr ? "-" : static_cast<const char*>(id); }
};

class KeyRoutingTest : public testing::Test {
protected:
    /* Another application's window has the focus, and the pad's client grabs Up and Return. */
    void padOverOther() {
        routing.mapped(otherWindow, other);
        routing.grab(padSurface, pad, {"Up", "Return"});
        recorder.taken();
    }

    const char* const pad = "pad";
    const char* const other = "other";
    const char* const padSurface = "grab surface";
    const char* const padWindow = "pad window";
    const char* const otherWindow = "other window";
    Recorder recorder;
    KeyRouting routing{recorder};
};

TEST_F(KeyRoutingTest, KeyWithoutFocusOrGrabGoesToNobody) {
    EXPECT_TRUE(routing.press("Up"));
    EXPECT_TRUE(routing.release("Up"));
    EXPECT_THAT(recorder.taken(), ElementsAre("- +Up nobody", "- -Up nobody"));
}

TEST_F(KeyRoutingTest, LatestWindowTakesTheFocusAndTheKeys) {
    routing.mapped(padWindow, pad);
    routing.mapped(otherWindow, other);
    routing.press("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("pad enters pad window", "pad leaves pad window",
                                              "other enters other window", "other +Up focus"));
}

TEST_F(KeyRoutingTest, GrabbedKeyGoesToTheGrabberAloneAndOtherKeysToTheFocus) {
    padOverOther();
    routing.press("Up");
    routing.release("Up");
    routing.press("XF86PowerOff");
    EXPECT_THAT(recorder.taken(), ElementsAre("pad +Up grab", "pad -Up grab", "other +XF86PowerOff focus"));
}

TEST_F(KeyRoutingTest, GrabberIsToldOfItsSurfaceWhileItGrabsAndTheFocusStays) {
    routing.mapped(otherWindow, other);
    recorder.taken();
    routing.grab(padSurface, pad, {"Up"});
    routing.mapped(padSurface, pad);
    routing.ungrab(padSurface, {"Up"});
    EXPECT_THAT(recorder.taken(), ElementsAre("pad enters grab surface", "pad leaves grab surface"));
    EXPECT_EQ(routing.focusedClient(), other);
}

TEST_F(KeyRoutingTest, GrabIsExclusiveAndTakesAllKeysOrNone) {
    padOverOther();
    EXPECT_THAT(routing.grab(otherWindow, other, {"Down", "Up"}), ElementsAre(KeyResult::kOk, KeyResult::kRefused));
    EXPECT_EQ(routing.grabsOf(other), 0u);
    EXPECT_THAT(routing.grab(otherWindow, other, {"Down", "NoSuchKey"}),
                ElementsAre(KeyResult::kOk, KeyResult::kInvalidKey));
    EXPECT_EQ(routing.grabsOf(other), 0u);
    EXPECT_THAT(routing.grab(padSurface, pad, {"Up", "Down"}), Each(KeyResult::kOk));
    EXPECT_EQ(routing.grabsOf(pad), 3u);
}

TEST_F(KeyRoutingTest, UngrabReleasesNoKeyOfAnotherSurface) {
    padOverOther();
    EXPECT_THAT(routing.ungrab(otherWindow, {"Up", "NoSuchKey"}), ElementsAre(KeyResult::kOk, KeyResult::kInvalidKey));
    EXPECT_EQ(routing.grabsOf(pad), 2u);
}

TEST_F(KeyRoutingTest, ReleaseFollowsItsPressThoughTheKeyWasUngrabbed) {
    padOverOther();
    routing.press("Up");
    routing.ungrab(padSurface, {"Up", "Return"});
    routing.release("Up");
    routing.press("Up");
    EXPECT_THAT(recorder.taken(),
                ElementsAre("pad +Up grab", "pad -Up grab", "pad leaves grab surface", "other +Up focus"));
}

TEST_F(KeyRoutingTest, ReleaseFollowsItsPressThoughTheKeyWasGrabbed) {
    routing.mapped(otherWindow, other);
    routing.press("Up");
    routing.grab(padSurface, pad, {"Up"});
    recorder.taken();
    routing.release("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("other -Up focus"));
}

TEST_F(KeyRoutingTest, FocusThatLeavesReleasesItsKeysFirst) {
    routing.mapped(otherWindow, other);
    routing.press("Up");
    recorder.taken();
    routing.mapped(padWindow, pad);
    EXPECT_THAT(recorder.taken(), ElementsAre("other -Up focus", "other leaves other window", "pad enters pad window"));
    routing.release("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("- -Up nobody"));
}

TEST_F(KeyRoutingTest, SurfaceThatGoesReleasesItsKeysAndItsGrabs) {
    padOverOther();
    routing.press("Up");
    routing.destroyed(padSurface);
    EXPECT_THAT(recorder.taken(), ElementsAre("pad +Up grab", "pad -Up grab"));
    routing.release("Up");
    routing.press("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("- -Up nobody", "other +Up focus"));
}

TEST_F(KeyRoutingTest, ClientThatDiesIsToldNothingAndItsKeysAreFree) {
    padOverOther();
    routing.press("Up");
    recorder.taken();
    routing.clientGone(pad);
    routing.destroyed(padSurface);
    EXPECT_THAT(recorder.taken(), IsEmpty());
    EXPECT_TRUE(routing.release("Up"));
    routing.press("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("- -Up nobody", "other +Up focus"));
}

TEST_F(KeyRoutingTest, FocusGoesToTheLatestWindowThatIsLeft) {
    routing.mapped(padWindow, pad);
    routing.mapped(otherWindow, other);
    routing.press("Down");
    recorder.taken();
    routing.clientGone(other);
    EXPECT_THAT(recorder.taken(), ElementsAre("pad enters pad window"));
    routing.unmapped(padWindow);
    EXPECT_THAT(recorder.taken(), ElementsAre("pad leaves pad window"));
    EXPECT_EQ(routing.focusedClient(), nullptr);
}

TEST_F(KeyRoutingTest, ClientWithTheFocusAndAGrabHasOneSurfaceWithTheKeyboard) {
    routing.mapped(padWindow, pad);
    routing.grab(padSurface, pad, {"Up"});
    routing.press("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("pad enters pad window", "pad +Up grab"));
    routing.mapped(otherWindow, other);
    EXPECT_THAT(recorder.taken(), ElementsAre("other enters other window"));
    routing.release("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("pad -Up grab", "pad leaves pad window", "pad enters grab surface"));
}

TEST_F(KeyRoutingTest, KeyOfAClientWithoutAKeyboardReachesNobody) {
    padOverOther();
    recorder.deaf = pad;
    routing.press("Up");
    routing.release("Up");
    EXPECT_THAT(recorder.taken(), ElementsAre("- +Up nobody", "- -Up nobody"));
}

TEST_F(KeyRoutingTest, PressTwiceAndReleaseWithoutAPressAreRefused) {
    EXPECT_FALSE(routing.release("Up"));
    EXPECT_TRUE(routing.press("Up"));
    EXPECT_FALSE(routing.press("Up"));
    EXPECT_TRUE(routing.release("Up"));
    EXPECT_FALSE(routing.release("Up"));
}

TEST_F(KeyRoutingTest, FocusIsGivenToClientsWithAWindowOnly) {
    padOverOther();
    EXPECT_FALSE(routing.focusClient(pad));
    routing.mapped(padWindow, pad);
    EXPECT_TRUE(routing.focusClient(other));
    EXPECT_EQ(routing.focusedClient(), other);
}

}  // namespace
