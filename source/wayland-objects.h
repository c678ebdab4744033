/*
 * The Wayland objects behind EFL that key grabbing needs. In C: EFL 1.26's Ecore-Wl2 header is not valid C++.
 *
 * Call with EFL's main-loop lock held. Everything belongs to EFL.
 */
#ifndef VAULTPAD_SOURCE_WAYLAND_OBJECTS_H
#define VAULTPAD_SOURCE_WAYLAND_OBJECTS_H

#include <Evas.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct WaylandConnection {
    bool connected; /* false: the rest is null, and no global was found */
    struct wl_display* display;
    struct wl_registry* registry;
    struct wl_seat* seat; /* null until the client's main loop has met a seat named seat0 or default */
    int global_id;        /* of the global that was looked for, -1 when there is none */
} WaylandConnection;

/*
 * Makes the calls below safe before anything is connected; nothing takes that back. Returns whether there is a
 * compositor to be had: one that the environment names, or one that EFL is connected to.
 */
bool vaultpad_wayland_prepare(void);

/* Looks at EFL's connected display, and among its globals for the interface. */
WaylandConnection vaultpad_wayland_connection(const char* interface);

/* Returns the surface of the window; null when *has_canvas is false or EFL draws on something else than Wayland. */
struct wl_surface* vaultpad_wayland_surface(const Evas_Object* window, bool* has_canvas);

#ifdef __cplusplus
}
#endif

#endif
