/* A Wayland compositor without a screen: clients get windows, and the remote control's keys are routed to them. */
#ifndef VAULTPAD_COMPOSITOR_COMPOSITOR_H
#define VAULTPAD_COMPOSITOR_COMPOSITOR_H

#include <wayland-server-core.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command.h"
#include "key-router.h"
#include "seat.h"
#include "surfaces.h"

namespace vaultpad::compositor {

class Compositor : private SurfaceObserver, private KeyRequestHandler {
public:
    using Say = std::function<void(const std::string& line)>;

    /*
     * say: receives what happens, a line each. Throws std::runtime_error.
     */
    explicit Compositor(Say say);
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    wl_display* display() const { return display_.get(); }

    /* Does what the command says; false, with the reason in mistake, when it cannot be done. */
    bool execute(const Command& command, std::string& mistake);

private:
    struct Client;
    struct DisplayDelete {
        void operator()(wl_display* display) const { wl_display_destroy(display); }
    };

    void surfaceMapped(wl_resource* surface) override;
    void surfaceUnmapped(wl_resource* surface) override;
    void surfaceDestroyed(wl_resource* surface) override;
    std::optional<std::vector<KeyResult>> handle(wl_client* client, const KeyRequest& request) override;

    static void onClientCreated(wl_listener* listener, void* data);
    static void onClientGone(wl_listener* listener, void* data);
    bool focus(pid_t pid, std::string& mistake);
    bool operateKey(const Command& command, std::string& mistake);
    void list();
    void listKeys();

    const Say say_;
    std::unique_ptr<wl_display, DisplayDelete> display_;
    std::unique_ptr<Surfaces> surfaces_;
    std::unique_ptr<Seat> seat_;
    struct Listener {
        wl_listener listener{};
        Compositor* owner = nullptr;
    };
    Listener clientCreated_;
    std::vector<std::unique_ptr<Client>> clients_;
};

}  // namespace vaultpad::compositor

#endif
