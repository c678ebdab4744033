/* A television with a Wayland connection that has the key router. */
#ifndef VAULTPAD_TESTS_UNIT_KEYROUTER_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_KEYROUTER_FIXTURE_H

#include <string>
#include <vector>

#include "platform-test.h"
#include "toolkit-session.h"
#include "vault_pad_keyrouter.h"

namespace vaultpad::test {

class KeyRouterTest : public PlatformTest {
protected:
    KeyRouterTest() {
        vaultpad_test_efl.wayland_connected = true;
        vaultpad_test_efl.has_key_router = true;
        libc().sleepsAreFake = true;
        platform().observer = [this](const std::string& function) {
            if (function == "KeyRouter_Initialize" || function == "elm_win_add" ||
                function == "KeyRouter_Add_All_Key") {
                depths.push_back(vaultpad_test_efl.main_loop_depth);
            }
        };
    }
    /* The router's state outlives a test: let it go. */
    ~KeyRouterTest() override {
        vault_pad_keyrouter_finalize();
        EXPECT_EQ(vaultpad_test_efl.main_loop_depth, 0) << "the main-loop lock was not left";
    }

    static Strings windowCalls() {
        return {"elm_win_add(null, VaultPad, 1)",
                "evas_object_resize(window, 1, 1)",
                "evas_object_move(window, 0, 0)",
                "elm_bg_add(window)",
                "elm_win_alpha_set(window, true)",
                "elm_win_resize_object_add(window, background)",
                "ecore_wl2_sync()"};
    }

    /* How deep the main-loop lock was held at each of the calls that need it. */
    std::vector<int> depths;

private:
    const ToolkitSession toolkit_;
};

}  // namespace vaultpad::test

#endif
