#include "vault_pad_keyrouter.h"

#include <Ecore.h>
#include <Elementary.h>
#include <unistd.h>
#include <vaultpad-platform/key-router.h>

#include "log.h"
#include "wayland-objects.h"

namespace {

constexpr const char* kKeyRouterInterface = "tizen_keyrouter";
constexpr int kInitializeAttempts = 10;
constexpr useconds_t kRetryDelayMicroseconds = 10000;

struct KeyRouterState {
    bool initialized = false;
    WaylandConnection wayland{};
    Evas_Object* window = nullptr;
    wl_surface* surface = nullptr;
    KeyRouter_KeyList keys{};
};

KeyRouterState state;

class MainLoopLock {
public:
    MainLoopLock() { ecore_thread_main_loop_begin(); }
    ~MainLoopLock() { ecore_thread_main_loop_end(); }
    MainLoopLock(const MainLoopLock&) = delete;
    MainLoopLock& operator=(const MainLoopLock&) = delete;
};

bool findKeyRouter() {
    state.wayland = vaultpad_wayland_connection(kKeyRouterInterface);
    if (!state.wayland.connected) {
        CA_LOG_ERROR("__wl2_display is NULL.");
    }
    if (state.wayland.global_id < 0) {
        CA_LOG_ERROR("cannot found keyrouter.");
        return false;
    }
    return true;
}

bool connectKeyRouter() {
    for (int attempt = 1; attempt <= kInitializeAttempts; ++attempt) {
        if (KeyRouter_Initialize(state.wayland.display, state.wayland.registry, state.wayland.seat,
                                 static_cast<unsigned int>(state.wayland.global_id)) == VAULTPAD_KEY_ROUTER_OK) {
            return true;
        }
        usleep(kRetryDelayMicroseconds);
    }
    CA_LOG_ERROR("KeyRouter initialization is failed!!!!");
    return false;
}

void makeGrabWindow() {
    state.window = elm_win_add(nullptr, "VaultPad", ELM_WIN_DIALOG_BASIC);
    evas_object_resize(state.window, 1, 1);
    evas_object_move(state.window, 0, 0);
    Evas_Object* background = elm_bg_add(state.window);
    elm_win_alpha_set(state.window, EINA_TRUE);
    elm_win_resize_object_add(state.window, background);

    bool hasCanvas = false;
    state.surface = vaultpad_wayland_surface(state.window, &hasCanvas);
    if (!hasCanvas) {
        CA_LOG_ERROR("__evas is NULL.");
    }
    ecore_wl2_sync();
}

bool listKeys() {
    KeyRouter_Reset_KeyList(&state.keys);
    if (KeyRouter_Add_All_Key(VAULTPAD_KEY_ROUTER_EXCLUSIVE, &state.keys) != VAULTPAD_KEY_ROUTER_OK) {
        CA_LOG_ERROR("Failed to add all key.");
        return false;
    }
    // The device must stay possible to switch off.
    KeyRouter_Remove_Key("XF86PowerOff", VAULTPAD_KEY_ROUTER_EXCLUSIVE, &state.keys);
    KeyRouter_Remove_Key("XF86LFDPowerOff", VAULTPAD_KEY_ROUTER_EXCLUSIVE, &state.keys);
    return true;
}

void* showWindow(void* window) {
    evas_object_show(static_cast<Evas_Object*>(window));
    return nullptr;
}

void* hideWindow(void* window) {
    evas_object_hide(static_cast<Evas_Object*>(window));
    return nullptr;
}

}  // namespace

bool vault_pad_keyrouter_initialize() {
    if (state.initialized) {
        CA_LOG_INFO("already init.");
        return true;
    }
    const MainLoopLock lock;
    if (!findKeyRouter() || !connectKeyRouter()) {
        return false;
    }
    makeGrabWindow();
    if (!listKeys()) {
        return false;
    }
    state.initialized = true;
    return true;
}

bool vault_pad_keyrouter_is_initialized() {
    CA_LOG_INFO("Init state: %d", state.initialized);
    return state.initialized;
}

bool vault_pad_keyrouter_grab() {
    if (!state.initialized) {
        CA_LOG_ERROR("cant grab");
        return false;
    }
    if (KeyRouter_Set_KeyList(state.surface, &state.keys) != VAULTPAD_KEY_ROUTER_OK) {
        CA_LOG_ERROR("cant grab key");
        return false;
    }
    ecore_main_loop_thread_safe_call_sync(showWindow, state.window);
    return true;
}

void vault_pad_keyrouter_ungrab() {
    if (!state.initialized) {
        return;
    }
    KeyRouter_UnSet_KeyList(state.surface, &state.keys);
    ecore_main_loop_thread_safe_call_sync(hideWindow, state.window);
}

void vault_pad_keyrouter_finalize() {
    if (!state.initialized) {
        return;
    }
    KeyRouter_Finalize();
    state.initialized = false;
    // The text is what log readers look for.
    CA_LOG_INFO("keyrouter finalizey");
}
