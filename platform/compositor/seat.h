/* The seat "seat0" with its one keyboard: what the key routing decides, sent to the clients. */
#ifndef VAULTPAD_COMPOSITOR_SEAT_H
#define VAULTPAD_COMPOSITOR_SEAT_H

#include <wayland-server-core.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "key-routing.h"
#include "keymap.h"

namespace vaultpad::compositor {

/* A client is known by its wl_client, a surface by its wl_surface. */
class Seat : public KeySink {
public:
    /* say: receives a line for every key that goes to someone or to nobody, and for every change of the focus. */
    Seat(wl_display* display, std::function<void(const std::string&)> say);
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

    KeyRouting& routing() { return routing_; }

    void enter(ClientId client, SurfaceId surface) override;
    void leave(ClientId client, SurfaceId surface) override;
    bool key(ClientId client, const std::string& name, bool pressed, Reason reason) override;
    void focusChanged(ClientId client) override;

private:
    static void bindSeat(wl_client* client, void* data, uint32_t version, uint32_t id);
    static void getKeyboard(wl_client* client, wl_resource* seat, uint32_t id);

    void sendEnter(wl_resource* keyboard, SurfaceId surface);
    template <typename Send>
    bool toKeyboardsOf(ClientId client, Send send);

    wl_display* const display_;
    const std::function<void(const std::string&)> say_;
    const Keymap keymap_ = makeKeymap();
    std::vector<wl_resource*> keyboards_;
    KeyRouting routing_{*this};
};

/* The process at the other end; 0 when there is no client. */
pid_t pidOf(ClientId client);

}  // namespace vaultpad::compositor

#endif
