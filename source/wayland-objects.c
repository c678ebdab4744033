#define EFL_BETA_API_SUPPORT
#include "wayland-objects.h"

#include <Ecore_Evas.h>
#include <Ecore_Wl2.h>
#include <stdlib.h>
#include <string.h>

bool vaultpad_wayland_prepare(void) {
    static bool done = false;
    if (!done) {
        done = ecore_wl2_init() > 0;
    }
    return getenv("WAYLAND_DISPLAY") != NULL || ecore_wl2_connected_display_get(NULL) != NULL;
}

WaylandConnection vaultpad_wayland_connection(const char* interface) {
    WaylandConnection connection = {.global_id = -1};
    Ecore_Wl2_Display* display = ecore_wl2_connected_display_get(NULL);
    connection.connected = display != NULL;
    if (display != NULL) {
        connection.display = ecore_wl2_display_get(display);
    }
    Eina_Iterator* globals = ecore_wl2_display_globals_get(display);
    connection.registry = ecore_wl2_display_registry_get(display);
    Ecore_Wl2_Input* input = ecore_wl2_input_default_input_get(display);
    if (input != NULL) {
        connection.seat = ecore_wl2_input_seat_get(input);
    }
    Ecore_Wl2_Global* global = NULL;
    while (globals != NULL && eina_iterator_next(globals, (void**)&global)) {
        if (global->interface != NULL && strcmp(global->interface, interface) == 0) {
            connection.global_id = (int)global->id;
            break;
        }
    }
    eina_iterator_free(globals);
    return connection;
}

struct wl_surface* vaultpad_wayland_surface(const Evas_Object* window, bool* has_canvas) {
    Ecore_Evas* canvas = ecore_evas_ecore_evas_get(evas_object_evas_get(window));
    *has_canvas = canvas != NULL;
    return ecore_wl2_window_surface_get(canvas != NULL ? ecore_evas_wayland2_window_get(canvas) : NULL);
}
