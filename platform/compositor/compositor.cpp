#include "compositor.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "../host/key-router-keys.h"
#include "output.h"
#include "shell.h"

namespace vaultpad::compositor {

struct Compositor::Client {
    wl_listener gone{};
    Compositor* owner = nullptr;
    wl_client* client = nullptr;
};

Compositor::Compositor(Say say) : say_(std::move(say)), display_(wl_display_create()) {
    if (!display_ || wl_display_init_shm(display_.get()) != 0) {
        throw std::runtime_error("the Wayland display could not be made");
    }
    surfaces_ = std::unique_ptr<Surfaces>(new Surfaces(display_.get(), *this));
    seat_ = std::make_unique<Seat>(display_.get(), say_);
    offerOutput(display_.get());
    offerShell(display_.get());
    offerKeyRouter(display_.get(), *this);
    clientCreated_.owner = this;
    clientCreated_.listener.notify = onClientCreated;
    wl_display_add_client_created_listener(display_.get(), &clientCreated_.listener);
}

Compositor::~Compositor() {
    wl_display_destroy_clients(display_.get());
    wl_list_remove(&clientCreated_.listener.link);
}

void Compositor::onClientCreated(wl_listener* listener, void* data) {
    Listener* created = nullptr;
    created = wl_container_of(listener, created, listener);
    auto client = std::make_unique<Client>();
    client->owner = created->owner;
    client->client = static_cast<wl_client*>(data);
    client->gone.notify = onClientGone;
    wl_client_add_destroy_listener(client->client, &client->gone);
    created->owner->clients_.push_back(std::move(client));
}

/* Runs before the client's objects go, so that nothing more is said to it. */
void Compositor::onClientGone(wl_listener* listener, void*) {
    Client* gone = nullptr;
    gone = wl_container_of(listener, gone, gone);
    Compositor* const self = gone->owner;
    const wl_client* const client = gone->client;
    self->say_("gone " + std::to_string(pidOf(client)));
    wl_list_remove(&gone->gone.link);
    auto& all = self->clients_;
    all.erase(std::remove_if(all.begin(), all.end(), [gone](const auto& entry) { return entry.get() == gone; }),
              all.end());
    self->seat_->routing().clientGone(client);
}

void Compositor::surfaceMapped(wl_resource* surface) {
    seat_->routing().mapped(surface, wl_resource_get_client(surface));
}

void Compositor::surfaceUnmapped(wl_resource* surface) {
    seat_->routing().unmapped(surface);
}

void Compositor::surfaceDestroyed(wl_resource* surface) {
    seat_->routing().destroyed(surface);
}

std::optional<std::vector<KeyResult>> Compositor::handle(wl_client* client, const KeyRequest& request) {
    KeyRouting& routing = seat_->routing();
    std::vector<KeyResult> results = request.grab ? routing.grab(request.surface, client, request.names)
                                                  : routing.ungrab(request.surface, request.names);
    say_(std::string(request.grab ? "grab " : "ungrab ") + std::to_string(pidOf(client)) + " holds " +
         std::to_string(routing.grabsOf(client)));
    return results;
}

bool Compositor::execute(const Command& command, std::string& mistake) {
    switch (command.kind) {
        case Command::Kind::kNone:
            return true;
        case Command::Kind::kPress:
        case Command::Kind::kRelease:
        case Command::Kind::kTap:
            return operateKey(command, mistake);
        case Command::Kind::kFocus:
            return focus(command.client, mistake);
        case Command::Kind::kList:
            list();
            return true;
        case Command::Kind::kKeys:
            listKeys();
            return true;
        case Command::Kind::kWrong:
            break;
    }
    mistake = command.mistake;
    return false;
}

bool Compositor::operateKey(const Command& command, std::string& mistake) {
    KeyRouting& routing = seat_->routing();
    if (command.kind != Command::Kind::kRelease && !routing.press(command.key)) {
        mistake = "the key '" + command.key + "' is down already; write release " + command.key;
        return false;
    }
    if (command.kind != Command::Kind::kPress && !routing.release(command.key)) {
        mistake = "the key '" + command.key + "' is not down; write press " + command.key;
        return false;
    }
    return true;
}

/* A process may have several connections; one with a window is meant. */
bool Compositor::focus(pid_t pid, std::string& mistake) {
    for (const auto& client : clients_) {
        if (pidOf(client->client) == pid && seat_->routing().focusClient(client->client)) {
            return true;
        }
    }
    mistake = "no client " + std::to_string(pid) + " with a window; 'list' lists the clients";
    return false;
}

void Compositor::list() {
    for (const auto& client : clients_) {
        say_("client " + std::to_string(pidOf(client->client)) + " grabs " +
             std::to_string(seat_->routing().grabsOf(client->client)) +
             (seat_->routing().focusedClient() == client->client ? " focused" : " unfocused"));
    }
}

void Compositor::listKeys() {
    for (const host::RemoteControlKey& key : host::remoteControlKeys()) {
        say_(std::string("remote ") + key.name + " " + std::to_string(key.code));
    }
}

}  // namespace vaultpad::compositor
