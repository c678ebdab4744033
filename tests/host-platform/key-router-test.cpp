#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vaultpad-platform/key-router.h>
#include <wayland-client.h>

#include <cstring>
#include <optional>
#include <set>
#include <string>

#include "television-fixture.h"
#include "test-compositor.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr int kExclusive = VAULTPAD_KEY_ROUTER_EXCLUSIVE;
constexpr int kOk = VAULTPAD_KEY_ROUTER_OK;

class KeyListTest : public TelevisionFixture {
protected:
    ~KeyListTest() override { KeyRouter_Reset_KeyList(&list_); }

    KeyRouter_KeyList list_ = {};
};

TEST_F(KeyListTest, HoldsEveryKeyOnceHoweverOftenTheyAreAdded) {
    EXPECT_EQ(KeyRouter_Reset_KeyList(&list_), kOk);
    EXPECT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    const unsigned int count = list_.count;
    EXPECT_GT(count, 20u);
    EXPECT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    EXPECT_EQ(list_.count, count);
}

TEST_F(KeyListTest, LosesAKeyThatIsRemovedAndOnlyOnce) {
    ASSERT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    const unsigned int count = list_.count;
    EXPECT_EQ(KeyRouter_Remove_Key("XF86PowerOff", kExclusive, &list_), kOk);
    EXPECT_EQ(KeyRouter_Remove_Key("XF86LFDPowerOff", kExclusive, &list_), kOk);
    EXPECT_EQ(list_.count, count - 2);
    EXPECT_NE(KeyRouter_Remove_Key("XF86PowerOff", kExclusive, &list_), kOk);
    EXPECT_NE(KeyRouter_Remove_Key("NoSuchKey", kExclusive, &list_), kOk);
    EXPECT_EQ(list_.count, count - 2);
}

TEST_F(KeyListTest, IsEmptyAfterAReset) {
    ASSERT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    EXPECT_EQ(KeyRouter_Reset_KeyList(&list_), kOk);
    EXPECT_EQ(list_.count, 0u);
    EXPECT_EQ(list_.keys, nullptr);
    EXPECT_NE(KeyRouter_Remove_Key("Up", kExclusive, &list_), kOk);
}

TEST_F(KeyListTest, RefusesOtherModesNullAndStaleLists) {
    EXPECT_NE(KeyRouter_Add_All_Key(0, &list_), kOk);
    EXPECT_NE(KeyRouter_Add_All_Key(kExclusive, nullptr), kOk);
    EXPECT_NE(KeyRouter_Reset_KeyList(nullptr), kOk);
    ASSERT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    EXPECT_NE(KeyRouter_Remove_Key("Up", 1, &list_), kOk);
    EXPECT_NE(KeyRouter_Remove_Key(nullptr, kExclusive, &list_), kOk);
    EXPECT_NE(KeyRouter_Remove_Key("Up", kExclusive, nullptr), kOk);
    KeyRouter_KeyList stale = list_;
    ASSERT_EQ(KeyRouter_Reset_KeyList(&list_), kOk);
    EXPECT_NE(KeyRouter_Add_All_Key(kExclusive, &stale), kOk);
    EXPECT_NE(KeyRouter_Remove_Key("Up", kExclusive, &stale), kOk);
    EXPECT_EQ(KeyRouter_Reset_KeyList(&stale), kOk);
}

/* What a client finds in the registry. */
struct Globals {
    uint32_t router = 0;
    uint32_t compositor = 0;
    int count = 0;
};

/* A client with a surface. */
class KeyRouterTest : public KeyListTest {
protected:
    void SetUp() override {
        useTelevision("[log]\ntarget=log\n");
        ASSERT_EQ(KeyRouter_Add_All_Key(kExclusive, &list_), kOk);
    }

    ~KeyRouterTest() override {
        KeyRouter_Finalize();
        if (display_ != nullptr) {
            if (surface_ != nullptr) {
                wl_surface_destroy(surface_);
                wl_compositor_destroy(compositor_);
            }
            wl_registry_destroy(registry_);
            wl_display_disconnect(display_);
        }
    }

    void connect(TestCompositor::Manner manner = TestCompositor::Manner::kGrants) {
        server_.emplace(manner);
        display_ = wl_display_connect_to_fd(server_->clientSocket());
        ASSERT_NE(display_, nullptr);
        registry_ = wl_display_get_registry(display_);
        static constexpr wl_registry_listener kListener = {
            [](void* data, wl_registry*, uint32_t id, const char* interface, uint32_t) {
                auto* const globals = static_cast<Globals*>(data);
                ++globals->count;
                if (std::strcmp(interface, "tizen_keyrouter") == 0) {
                    globals->router = id;
                } else if (std::strcmp(interface, "wl_compositor") == 0) {
                    globals->compositor = id;
                }
            },
            [](void*, wl_registry*, uint32_t) {}};
        wl_registry_add_listener(registry_, &kListener, &globals_);
        ASSERT_GE(wl_display_roundtrip(display_), 0);
        compositor_ =
            static_cast<wl_compositor*>(wl_registry_bind(registry_, globals_.compositor, &wl_compositor_interface, 1));
        surface_ = wl_compositor_create_surface(compositor_);
    }

    int initialize() { return KeyRouter_Initialize(display_, registry_, nullptr, globals_.router); }

    std::optional<TestCompositor> server_;
    wl_display* display_ = nullptr;
    wl_registry* registry_ = nullptr;
    wl_compositor* compositor_ = nullptr;
    wl_surface* surface_ = nullptr;
    Globals globals_;
};

TEST_F(KeyRouterTest, GrabsTheKeysOfTheListForTheSurface) {
    connect();
    ASSERT_EQ(initialize(), kOk);
    ASSERT_EQ(KeyRouter_Remove_Key("XF86PowerOff", kExclusive, &list_), kOk);
    EXPECT_EQ(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    const std::vector<RecordedRequest> requests = server_->requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_TRUE(requests[0].grab);
    EXPECT_EQ(requests[0].mode, 4u);
    EXPECT_EQ(requests[0].surface, wl_proxy_get_id(reinterpret_cast<wl_proxy*>(surface_)));
    EXPECT_EQ(requests[0].names.size(), list_.count);
    EXPECT_EQ(std::set<std::string>(requests[0].names.begin(), requests[0].names.end()).size(), list_.count);
    for (const char* key : {"Return", "Up", "Down", "Left", "Right", "XF86Back", "XF86Exit", "XF86LFDPowerOff",
                            "XF86AudioRaiseVolume", "XF86AudioLowerVolume"}) {
        EXPECT_THAT(requests[0].names, Contains(key));
    }
    EXPECT_THAT(requests[0].names, Not(Contains("XF86PowerOff")));
}

TEST_F(KeyRouterTest, ReleasesTheKeysOfTheList) {
    connect();
    ASSERT_EQ(initialize(), kOk);
    ASSERT_EQ(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_EQ(KeyRouter_UnSet_KeyList(surface_, &list_), kOk);
    const std::vector<RecordedRequest> requests = server_->requests();
    ASSERT_EQ(requests.size(), 2u);
    EXPECT_FALSE(requests[1].grab);
    EXPECT_EQ(requests[1].names, requests[0].names);
    EXPECT_EQ(requests[1].surface, requests[0].surface);
}

TEST_F(KeyRouterTest, FailsWhenTheCompositorRefuses) {
    connect(TestCompositor::Manner::kRefuses);
    ASSERT_EQ(initialize(), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_NE(KeyRouter_UnSet_KeyList(surface_, &list_), kOk);
    EXPECT_THAT(contentOf(folder() / "log"), HasSubstr("refused the key Return (result 3)"));
    EXPECT_THAT(contentOf(folder() / "log"), HasSubstr("refused the keys (result 3)"));
}

TEST_F(KeyRouterTest, FailsWhenTheCompositorDoesNotAnswer) {
    connect(TestCompositor::Manner::kIsSilent);
    ASSERT_EQ(initialize(), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_THAT(contentOf(folder() / "log"), HasSubstr("did not answer about the keys"));
}

TEST_F(KeyRouterTest, TakesNoEarlierAnswerForTheLatest) {
    connect(TestCompositor::Manner::kGrantsOnce);
    ASSERT_EQ(initialize(), kOk);
    EXPECT_EQ(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_NE(KeyRouter_UnSet_KeyList(surface_, &list_), kOk);
}

TEST_F(KeyRouterTest, FailsWhenTheCompositorEndsTheConnection) {
    connect(TestCompositor::Manner::kEndsTheConnection);
    ASSERT_EQ(initialize(), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    ecore_wl2_sync();
    KeyRouter_Finalize();
    EXPECT_NE(initialize(), kOk);
}

TEST_F(KeyRouterTest, FailsWithoutInitialization) {
    connect();
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_NE(KeyRouter_UnSet_KeyList(surface_, &list_), kOk);
    ASSERT_EQ(initialize(), kOk);
    KeyRouter_Finalize();
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_TRUE(server_->requests().empty());
}

TEST_F(KeyRouterTest, FailsWithoutASurfaceOrKeys) {
    connect();
    ASSERT_EQ(initialize(), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(nullptr, &list_), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, nullptr), kOk);
    ASSERT_EQ(KeyRouter_Reset_KeyList(&list_), kOk);
    EXPECT_NE(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    EXPECT_TRUE(server_->requests().empty());
}

TEST_F(KeyRouterTest, RefusesAGlobalThatIsNoKeyRouterAndKeepsTheConnection) {
    connect();
    for (const uint32_t id : {0u, globals_.compositor, 4711u, UINT32_MAX}) {
        EXPECT_NE(KeyRouter_Initialize(display_, registry_, nullptr, id), kOk) << id;
    }
    EXPECT_EQ(wl_display_get_error(display_), 0);
    EXPECT_EQ(initialize(), kOk);
}

TEST_F(KeyRouterTest, RefusesToInitializeWithoutADisplayOrARegistry) {
    connect();
    EXPECT_NE(KeyRouter_Initialize(nullptr, registry_, nullptr, globals_.router), kOk);
    EXPECT_NE(KeyRouter_Initialize(display_, nullptr, nullptr, globals_.router), kOk);
}

TEST_F(KeyRouterTest, MayBeInitializedAgainAndLetsGoWhenFinalized) {
    connect();
    EXPECT_EQ(initialize(), kOk);
    EXPECT_EQ(initialize(), kOk);
    KeyRouter_Finalize();
    KeyRouter_Finalize();
    ASSERT_GE(wl_display_roundtrip(display_), 0);
    EXPECT_EQ(server_->releases(), 1);
    EXPECT_EQ(initialize(), kOk);
    EXPECT_EQ(KeyRouter_Set_KeyList(surface_, &list_), kOk);
}

TEST_F(KeyRouterTest, DeliversNoEventOfTheClient) {
    connect();
    bool delivered = false;
    wl_callback* const callback = wl_display_sync(display_);
    static constexpr wl_callback_listener kListener = {
        [](void* data, wl_callback*, uint32_t) { *static_cast<bool*>(data) = true; }};
    wl_callback_add_listener(callback, &kListener, &delivered);
    ASSERT_EQ(initialize(), kOk);
    ASSERT_EQ(KeyRouter_Set_KeyList(surface_, &list_), kOk);
    ecore_wl2_sync();
    EXPECT_FALSE(delivered);
    EXPECT_EQ(globals_.count, 3);
    wl_display_dispatch_pending(display_);
    EXPECT_TRUE(delivered);
    wl_callback_destroy(callback);
}

TEST_F(KeyRouterTest, SyncWaitsUntilTheCompositorHandledWhatWasSent) {
    ecore_wl2_sync(); /* nothing is bound */
    connect();
    ASSERT_EQ(initialize(), kOk);
    KeyRouter_Finalize(); /* is sent with the next flush */
    ASSERT_EQ(initialize(), kOk);
    ecore_wl2_sync();
    EXPECT_EQ(server_->releases(), 1);
}

}  // namespace
