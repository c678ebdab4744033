// A client whose main thread runs the toolkit's main loop, and which calls the library from a thread of its own.
#include <Ecore.h>

#include <thread>

#include "application-fixture.h"
#include "keyrouter-fixture.h"

namespace vaultpad::test {
namespace {

template <typename Work>
void runBesideTheMainLoop(Work work) {
    std::thread caller([&work] {
        work();
        ecore_main_loop_thread_safe_call_async([](void*) { ecore_main_loop_quit(); }, nullptr);
    });
    ecore_main_loop_begin();
    caller.join();
}

TEST_F(KeyRouterTest, GrabsAndUngrabsFromAnotherThreadThanTheMainLoops) {
    runBesideTheMainLoop([] {
        EXPECT_TRUE(vault_pad_keyrouter_initialize());
        EXPECT_TRUE(vault_pad_keyrouter_grab());
        vault_pad_keyrouter_ungrab();
        vault_pad_keyrouter_finalize();
    });
    EXPECT_EQ(platform().callsOf("evas_object_show"), Strings{"evas_object_show(window)"});
    EXPECT_EQ(platform().callsOf("evas_object_hide"), Strings{"evas_object_hide(window)"});
    EXPECT_EQ(platform().count("KeyRouter_Finalize"), 1);
}

class EntryPointsBesideTheMainLoop : public ApplicationTest {
protected:
    EntryPointsBesideTheMainLoop() {
        writeLayout("normal/pinpad.xml");
        vaultpad_test_efl.wayland_connected = true;
        vaultpad_test_efl.has_key_router = true;
    }

private:
    const ToolkitSession toolkit_;
};

TEST_F(EntryPointsBesideTheMainLoop, ServeAWholeSessionOfTheKeyGrabbingFamily) {
    platform().answer = {1u, 1u, 2u, 3u, 7u, Bytes{1, 2}, Bytes{3, 4, 5}};
    runBesideTheMainLoop([] {
        ASSERT_EQ(vault_pad_session(), 1);
        EXPECT_EQ(vault_pad_create(1, 4), 0);
        const char* name = "Return";
        EXPECT_EQ(vault_pad_event(2, &name), 0);
        EXPECT_EQ(is_vault_pad_close(), 1);
        EXPECT_EQ(vault_pad_close(), 0);
    });
    EXPECT_EQ(app_data.ta_value, 7u);
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA).written.size(), 8u);
}

TEST_F(EntryPointsBesideTheMainLoop, ServeAWholeSessionOfTheOtherFamily) {
    platform().answer = {1u, 0u, 0u, 0u, 0u};
    runBesideTheMainLoop([] {
        Bytes key(4);
        EXPECT_EQ(CsapiVPADcreate(1, 4, 0, 0, key.data(), 2, 2, nullptr, 0), 0);
        unsigned int value = 9;
        unsigned int closed = 9;
        EXPECT_EQ(CsapiVPADevent("Up", &value, &closed), 0);
        EXPECT_EQ(closed, 0u);
        EXPECT_EQ(CsapiVPADclose(), 0);
    });
    EXPECT_EQ(platform().count("tzfw_core_finalize_context"), 1);
}

}  // namespace
}  // namespace vaultpad::test
