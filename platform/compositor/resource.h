/* What every Wayland object of the compositor needs. */
#ifndef VAULTPAD_COMPOSITOR_RESOURCE_H
#define VAULTPAD_COMPOSITOR_RESOURCE_H

#include <wayland-server-core.h>

#include <cstdint>

namespace vaultpad::compositor {

/* Makes a client's object. When there is no memory, the client is told so and null returned. */
inline wl_resource* makeResource(wl_client* client, const wl_interface* interface, int version, uint32_t id,
                                 const void* implementation, void* data,
                                 wl_resource_destroy_func_t onDestroy = nullptr) {
    wl_resource* const resource = wl_resource_create(client, interface, version, id);
    if (resource == nullptr) {
        wl_client_post_no_memory(client);
        return nullptr;
    }
    wl_resource_set_implementation(resource, implementation, data, onDestroy);
    return resource;
}

/* Offers an interface whose objects carry the data and need nothing said when they are bound. */
template <const wl_interface* kInterface, auto kImplementation>
void makeGlobal(wl_display* display, int version, void* data) {
    wl_global_create(display, kInterface, version, data,
                     [](wl_client* client, void* owner, uint32_t bound, uint32_t id) {
                         makeResource(client, kInterface, static_cast<int>(bound), id, kImplementation, owner);
                     });
}

/* The usual request "destroy". */
inline void destroyResource(wl_client*, wl_resource* resource) {
    wl_resource_destroy(resource);
}

}  // namespace vaultpad::compositor

#endif
