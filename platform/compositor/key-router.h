/* The global tizen_keyrouter: passes requests about keys on, and sends the answers. */
#ifndef VAULTPAD_COMPOSITOR_KEY_ROUTER_H
#define VAULTPAD_COMPOSITOR_KEY_ROUTER_H

#include <wayland-server-core.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "key-routing.h"

namespace vaultpad::compositor {

/* A request about keys as it arrived. */
struct KeyRequest {
    bool grab; /* or release */
    uint32_t mode;
    wl_resource* surface;
    std::vector<std::string> names;
};

class KeyRequestHandler {
public:
    virtual ~KeyRequestHandler() = default;
    /* Returns a result for each name, in their order; nothing: the client gets no answer. */
    virtual std::optional<std::vector<KeyResult>> handle(wl_client* client, const KeyRequest& request) = 0;
    /* A client let go of its key router object. */
    virtual void released(wl_client*) {}
};

/* Offers the global; it goes with the display. The handler outlives the display. */
void offerKeyRouter(wl_display* display, KeyRequestHandler& handler);

}  // namespace vaultpad::compositor

#endif
