#include "shell.h"

#include <cstdint>

#include "resource.h"
#include "surfaces.h"
#include "xdg-shell-server.h"

namespace vaultpad::compositor {

namespace {

constexpr int kShellVersion = 1;

/* Goes with its xdg_surface. */
struct ShellSurface {
    wl_resource* resource = nullptr;
    wl_resource* surface = nullptr; /* null when the client took it away first */
    wl_resource* toplevel = nullptr;
    bool configured = false;
    wl_listener surfaceGone{};
};

ShellSurface* shellSurfaceOf(wl_resource* resource) {
    return static_cast<ShellSurface*>(wl_resource_get_user_data(resource));
}

void configureOnce(ShellSurface* shell) {
    if (shell->configured || shell->toplevel == nullptr) {
        return;
    }
    shell->configured = true;
    wl_array states;
    wl_array_init(&states);
    auto* const state = static_cast<uint32_t*>(wl_array_add(&states, sizeof(uint32_t)));
    if (state != nullptr) {
        *state = XDG_TOPLEVEL_STATE_ACTIVATED;
    }
    xdg_toplevel_send_configure(shell->toplevel, 0, 0, &states);
    wl_array_release(&states);
    wl_display* const display = wl_client_get_display(wl_resource_get_client(shell->resource));
    xdg_surface_send_configure(shell->resource, wl_display_next_serial(display));
}

void dropRole(ShellSurface* shell) {
    shell->configured = false;
    if (shell->surface != nullptr) {
        Surface::of(shell->surface)->setRole({});
    }
}

void ignoreParent(wl_client*, wl_resource*, wl_resource*) {}
void ignoreText(wl_client*, wl_resource*, const char*) {}
void ignoreMenu(wl_client*, wl_resource*, wl_resource*, uint32_t, int32_t, int32_t) {}
void ignoreMove(wl_client*, wl_resource*, wl_resource*, uint32_t) {}
void ignoreResize(wl_client*, wl_resource*, wl_resource*, uint32_t, uint32_t) {}
void ignoreSize(wl_client*, wl_resource*, int32_t, int32_t) {}
void ignoreRequest(wl_client*, wl_resource*) {}
void ignoreArea(wl_client*, wl_resource*, int32_t, int32_t, int32_t, int32_t) {}
void ignoreSerial(wl_client*, wl_resource*, uint32_t) {}

void getToplevel(wl_client* client, wl_resource* resource, uint32_t id) {
    static constexpr struct xdg_toplevel_interface kToplevel = {
        destroyResource, ignoreParent, ignoreText,    ignoreText,    ignoreMenu,   ignoreMove,    ignoreResize,
        ignoreSize,      ignoreSize,   ignoreRequest, ignoreRequest, ignoreParent, ignoreRequest, ignoreRequest};
    ShellSurface* const shell = shellSurfaceOf(resource);
    if (shell->toplevel != nullptr || shell->surface == nullptr) {
        wl_resource_post_error(resource, XDG_SURFACE_ERROR_ALREADY_CONSTRUCTED, "the surface is no free xdg_surface");
        return;
    }
    shell->toplevel = makeResource(client, &xdg_toplevel_interface, wl_resource_get_version(resource), id, &kToplevel,
                                   shell, [](wl_resource* gone) {
                                       if (ShellSurface* const owner = shellSurfaceOf(gone)) {
                                           owner->toplevel = nullptr;
                                           dropRole(owner);
                                       }
                                   });
    if (shell->toplevel != nullptr) {
        Surface::of(shell->surface)->setRole([shell]() { configureOnce(shell); });
    }
}

void getPopup(wl_client*, wl_resource* resource, uint32_t, wl_resource*, wl_resource*) {
    wl_resource_post_error(resource, XDG_WM_BASE_ERROR_ROLE, "this compositor has no popups");
}

void deleteShellSurface(wl_resource* resource) {
    ShellSurface* const shell = shellSurfaceOf(resource);
    if (shell->toplevel != nullptr) {
        wl_resource_set_user_data(shell->toplevel, nullptr);
    }
    dropRole(shell);
    if (shell->surface != nullptr) {
        wl_list_remove(&shell->surfaceGone.link);
    }
    delete shell;
}

void onSurfaceGone(wl_listener* listener, void*) {
    ShellSurface* shell = nullptr;
    shell = wl_container_of(listener, shell, surfaceGone);
    wl_list_remove(&shell->surfaceGone.link);
    shell->surface = nullptr;
}

void getXdgSurface(wl_client* client, wl_resource* base, uint32_t id, wl_resource* surface) {
    static constexpr struct xdg_surface_interface kXdgSurface = {destroyResource, getToplevel, getPopup, ignoreArea,
                                                                 ignoreSerial};
    auto* const shell = new ShellSurface;
    shell->resource = makeResource(client, &xdg_surface_interface, wl_resource_get_version(base), id, &kXdgSurface,
                                   shell, deleteShellSurface);
    if (shell->resource == nullptr) {
        delete shell;
        return;
    }
    shell->surface = surface;
    shell->surfaceGone.notify = onSurfaceGone;
    wl_resource_add_destroy_listener(surface, &shell->surfaceGone);
}

/* Popups are refused, so nothing of a positioner is ever used. */
void createPositioner(wl_client* client, wl_resource* base, uint32_t id) {
    static constexpr struct xdg_positioner_interface kPositioner = {
        destroyResource, ignoreSize, ignoreArea,    ignoreSerial, ignoreSerial,
        ignoreSerial,    ignoreSize, ignoreRequest, ignoreSize,   ignoreSerial};
    makeResource(client, &xdg_positioner_interface, wl_resource_get_version(base), id, &kPositioner, nullptr);
}

}  // namespace

void offerShell(wl_display* display) {
    static constexpr struct xdg_wm_base_interface kBase = {destroyResource, createPositioner, getXdgSurface,
                                                           ignoreSerial};
    makeGlobal<&xdg_wm_base_interface, &kBase>(display, kShellVersion, nullptr);
}

}  // namespace vaultpad::compositor
