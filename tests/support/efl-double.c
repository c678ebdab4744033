#define EFL_BETA_API_SUPPORT
#include "efl-double.h"

#include <Ecore.h>
#include <Ecore_Evas.h>
#include <Ecore_Wl2.h>
#include <Elementary.h>
#include <stdio.h>

EflDouble vaultpad_test_efl;

/* Handles: addresses of these. */
static int display_object;
static int native_display_object;
static int registry_object;
static int input_object;
static int seat_object;
static int window_object;
static int background_object;
static int evas_object;
static int canvas_object;
static int wayland_window_object;
static int surface_object;

void vaultpad_test_reset_efl(void) {
    vaultpad_test_efl = (EflDouble){.window_has_canvas = true};
}

#define HANDLE(type, object) ((type*)(void*)&object)

Ecore_Wl2_Display* __wrap_ecore_wl2_connected_display_get(const char* name) {
    vaultpad_test_record("ecore_wl2_connected_display_get", name != NULL ? name : "null");
    return vaultpad_test_efl.wayland_connected ? HANDLE(Ecore_Wl2_Display, display_object) : NULL;
}

struct wl_display* __wrap_ecore_wl2_display_get(Ecore_Wl2_Display* display) {
    return display != NULL ? HANDLE(struct wl_display, native_display_object) : NULL;
}

Eina_Iterator* __wrap_ecore_wl2_display_globals_get(Ecore_Wl2_Display* display) {
    static Ecore_Wl2_Global compositor = {.id = 1, .interface = "wl_compositor", .version = 4};
    static Ecore_Wl2_Global similar = {.id = 2, .interface = "tizen_keyrouter_other", .version = 1};
    static Ecore_Wl2_Global router = {.id = VAULTPAD_TEST_KEY_ROUTER_ID, .interface = "tizen_keyrouter", .version = 1};
    static Ecore_Wl2_Global last = {.id = 30, .interface = "wl_seat", .version = 4};
    static void* all[] = {&compositor, &similar, &router, &last, NULL};
    static void* without[] = {&compositor, &similar, &last, NULL};
    if (display == NULL) {
        return NULL;
    }
    return eina_carray_iterator_new(vaultpad_test_efl.has_key_router ? all : without);
}

struct wl_registry* __wrap_ecore_wl2_display_registry_get(Ecore_Wl2_Display* display) {
    return display != NULL ? HANDLE(struct wl_registry, registry_object) : NULL;
}

Ecore_Wl2_Input* __wrap_ecore_wl2_input_default_input_get(const Ecore_Wl2_Display* display) {
    return display != NULL ? HANDLE(Ecore_Wl2_Input, input_object) : NULL;
}

struct wl_seat* __wrap_ecore_wl2_input_seat_get(Ecore_Wl2_Input* input) {
    return input != NULL ? HANDLE(struct wl_seat, seat_object) : NULL;
}

struct wl_surface* __wrap_ecore_wl2_window_surface_get(Ecore_Wl2_Window* window) {
    return window != NULL ? HANDLE(struct wl_surface, surface_object) : NULL;
}

Ecore_Wl2_Window* __wrap_ecore_evas_wayland2_window_get(const Ecore_Evas* canvas) {
    return canvas != NULL ? HANDLE(Ecore_Wl2_Window, wayland_window_object) : NULL;
}

Ecore_Evas* __wrap_ecore_evas_ecore_evas_get(const Evas* evas) {
    const bool known = (const void*)evas == &evas_object;
    return known && vaultpad_test_efl.window_has_canvas ? HANDLE(Ecore_Evas, canvas_object) : NULL;
}

Evas* __wrap_evas_object_evas_get(const Eo* object) {
    return (const void*)object == &window_object ? HANDLE(Evas, evas_object) : NULL;
}

Evas_Object* __wrap_elm_win_add(Evas_Object* parent, const char* name, Elm_Win_Type type) {
    char arguments[64];
    snprintf(arguments, sizeof(arguments), "%s, %s, %d", parent != NULL ? "parent" : "null", name, (int)type);
    vaultpad_test_record("elm_win_add", arguments);
    ++vaultpad_test_efl.windows;
    return HANDLE(Evas_Object, window_object);
}

Evas_Object* __wrap_elm_bg_add(Evas_Object* parent) {
    vaultpad_test_record("elm_bg_add", (void*)parent == &window_object ? "window" : "other");
    return HANDLE(Evas_Object, background_object);
}

void __wrap_elm_win_alpha_set(Evas_Object* window, Eina_Bool alpha) {
    vaultpad_test_record("elm_win_alpha_set",
                         (void*)window == &window_object && alpha == EINA_TRUE ? "window, true" : "other");
}

void __wrap_elm_win_resize_object_add(Evas_Object* window, Evas_Object* object) {
    const bool expected = (void*)window == &window_object && (void*)object == &background_object;
    vaultpad_test_record("elm_win_resize_object_add", expected ? "window, background" : "other");
}

void __real_evas_object_resize(Evas_Object* object, Evas_Coord width, Evas_Coord height);
void __real_evas_object_move(Evas_Object* object, Evas_Coord x, Evas_Coord y);
void __real_evas_object_show(Evas_Object* object);
void __real_evas_object_hide(Evas_Object* object);
int __real_ecore_thread_main_loop_begin(void);
int __real_ecore_thread_main_loop_end(void);
void* __real_ecore_main_loop_thread_safe_call_sync(Ecore_Data_Cb callback, void* data);

static void record_pair(const char* function, int first, int second) {
    char arguments[32];
    snprintf(arguments, sizeof(arguments), "window, %d, %d", first, second);
    vaultpad_test_record(function, arguments);
}

void __wrap_evas_object_resize(Evas_Object* object, Evas_Coord width, Evas_Coord height) {
    if ((void*)object == &window_object) {
        record_pair("evas_object_resize", width, height);
    } else {
        __real_evas_object_resize(object, width, height);
    }
}

void __wrap_evas_object_move(Evas_Object* object, Evas_Coord x, Evas_Coord y) {
    if ((void*)object == &window_object) {
        record_pair("evas_object_move", x, y);
    } else {
        __real_evas_object_move(object, x, y);
    }
}

void __wrap_evas_object_show(Evas_Object* object) {
    if ((void*)object == &window_object) {
        vaultpad_test_record("evas_object_show", "window");
    } else {
        __real_evas_object_show(object);
    }
}

void __wrap_evas_object_hide(Evas_Object* object) {
    if ((void*)object == &window_object) {
        vaultpad_test_record("evas_object_hide", "window");
    } else {
        __real_evas_object_hide(object);
    }
}

int __wrap_ecore_thread_main_loop_begin(void) {
    ++vaultpad_test_efl.main_loop_depth;
    return __real_ecore_thread_main_loop_begin();
}

int __wrap_ecore_thread_main_loop_end(void) {
    --vaultpad_test_efl.main_loop_depth;
    return __real_ecore_thread_main_loop_end();
}

void* __wrap_ecore_main_loop_thread_safe_call_sync(Ecore_Data_Cb callback, void* data) {
    if (data == &window_object) {
        ++vaultpad_test_efl.main_loop_calls;
    }
    return __real_ecore_main_loop_thread_safe_call_sync(callback, data);
}
