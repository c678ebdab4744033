#include <vaultpad-platform/key-router.h>
#include <wayland-client.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "call-guard.h"
#include "handle-table.h"
#include "host-log.h"
#include "key-router-keys.h"
#include "tizen-keyrouter-client.h"

namespace vaultpad::host {

namespace {

constexpr int kNotOk = 0;
constexpr uint32_t kProtocolVersion = 1;

/* What a request may carry: libwayland's messages have 4096 bytes, and a few words stand beside the names. */
constexpr std::size_t kNamesSizeMax = 4000;

using KeyNames = std::vector<const char*>;
using KeyLists = HandleTable<KeyNames>;

struct WaylandDelete {
    void operator()(wl_event_queue* queue) const { wl_event_queue_destroy(queue); }
    void operator()(wl_display* wrapper) const { wl_proxy_wrapper_destroy(wrapper); }
    void operator()(wl_registry* registry) const { wl_registry_destroy(registry); }
    void operator()(tizen_keyrouter* router) const { tizen_keyrouter_destroy(router); }
};
template <typename Object>
using Wayland = std::unique_ptr<Object, WaylandDelete>;

/* Everything that is bound to one display. It has an event queue of its own, so that the client's events stay put. */
class Router {
public:
    /* Returns null when the display is gone or has no key router under this id. */
    static std::unique_ptr<Router> bind(wl_display* display, uint32_t globalId) {
        std::unique_ptr<Router> router(new Router(display, globalId));
        return router->router_ ? std::move(router) : nullptr;
    }

    wl_display* display() const { return display_; }

    /* Waits until the compositor has handled everything that was sent. */
    bool roundtrip() { return wl_display_roundtrip_queue(display_, queue_.get()) >= 0; }

    bool grab(wl_surface* surface, const KeyNames& names) {
        return request(names, [&](uint32_t serial, wl_array* packed) {
            tizen_keyrouter_set_keygrab_list(router_.get(), serial, surface, TIZEN_KEYROUTER_MODE_EXCLUSIVE, packed);
        });
    }

    bool release(wl_surface* surface, const KeyNames& names) {
        return request(names, [&](uint32_t serial, wl_array* packed) {
            tizen_keyrouter_unset_keygrab_list(router_.get(), serial, surface, packed);
        });
    }

private:
    Router(wl_display* display, uint32_t globalId)
        : display_(display), globalId_(globalId), queue_(wl_display_create_queue(display)) {
        const Wayland<wl_display> wrapper(static_cast<wl_display*>(wl_proxy_create_wrapper(display)));
        if (!queue_ || !wrapper) {
            return;
        }
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper.get()), queue_.get());
        /* The globals are listed anew: binding an id that is not there would end the client's connection. */
        const Wayland<wl_registry> registry(wl_display_get_registry(wrapper.get()));
        static constexpr wl_registry_listener kRegistryListener = {onGlobal, onGlobalRemoved};
        if (!registry || wl_registry_add_listener(registry.get(), &kRegistryListener, this) != 0 || !roundtrip()) {
            router_.reset();
            return;
        }
    }

    static void onGlobal(void* data, wl_registry* registry, uint32_t id, const char* interface, uint32_t) {
        auto* const self = static_cast<Router*>(data);
        if (id != self->globalId_ || std::strcmp(interface, tizen_keyrouter_interface.name) != 0) {
            return;
        }
        static constexpr tizen_keyrouter_listener kRouterListener = {onKeyResult, onResult};
        self->router_.reset(static_cast<tizen_keyrouter*>(
            wl_registry_bind(registry, id, &tizen_keyrouter_interface, kProtocolVersion)));
        if (self->router_) {
            tizen_keyrouter_add_listener(self->router_.get(), &kRouterListener, self);
        }
    }

    static void onGlobalRemoved(void*, wl_registry*, uint32_t) {}

    static void onKeyResult(void* data, tizen_keyrouter*, uint32_t serial, const char* name, uint32_t result) {
        if (serial == static_cast<Router*>(data)->serial_ && result != TIZEN_KEYROUTER_RESULT_OK) {
            VAULTPAD_HOST_LOG_ERROR("the compositor refused the key %s (result %u)", name, result);
        }
    }

    static void onResult(void* data, tizen_keyrouter*, uint32_t serial, uint32_t result) {
        auto* const self = static_cast<Router*>(data);
        if (serial == self->serial_) {
            self->answered_ = true;
            self->result_ = result;
        }
    }

    template <typename Send>
    bool request(const KeyNames& names, Send&& send) {
        std::string packed;
        for (const char* const name : names) {
            packed.append(name, std::strlen(name) + 1);
        }
        if (packed.empty() || packed.size() > kNamesSizeMax) {
            return false;
        }
        wl_array array = {packed.size(), packed.size(), packed.data()};
        answered_ = false;
        send(++serial_, &array);
        if (!roundtrip() || !answered_) {
            VAULTPAD_HOST_LOG_ERROR("the compositor did not answer about the keys (Wayland error %d)",
                                    wl_display_get_error(display_));
            return false;
        }
        if (result_ != TIZEN_KEYROUTER_RESULT_OK) {
            VAULTPAD_HOST_LOG_ERROR("the compositor refused the keys (result %u)", result_);
        }
        return result_ == TIZEN_KEYROUTER_RESULT_OK;
    }

    wl_display* const display_;
    const uint32_t globalId_;
    const Wayland<wl_event_queue> queue_;
    Wayland<tizen_keyrouter> router_;
    uint32_t serial_ = 0; /* of the latest request */
    bool answered_ = false;
    uint32_t result_ = 0;
};

/* The one binding of the process. Not released at its end: the client's display may be gone by then. */
std::unique_ptr<Router>& boundRouter() {
    static auto* const router = new std::unique_ptr<Router>;
    return *router;
}

/* Runs an action that returns true on success on a live list. */
template <typename Action>
int onList(KeyRouter_KeyList* list, Action&& action) noexcept {
    return orFailure(kNotOk, [&]() {
        const auto keys = list == nullptr ? nullptr : KeyLists::instance().find(list->keys);
        if (!keys || !action(*keys)) {
            return kNotOk;
        }
        list->count = static_cast<unsigned int>(keys->size());
        return static_cast<int>(VAULTPAD_KEY_ROUTER_OK);
    });
}

}  // namespace

}  // namespace vaultpad::host

using namespace vaultpad::host;

/* Keys are grabbed for the surface, whichever seat they come from: the seat is not looked at. */
int KeyRouter_Initialize(wl_display* display, wl_registry* registry, wl_seat*, unsigned int global_id) {
    if (display == nullptr || registry == nullptr) {
        return kNotOk;
    }
    return orFailure(kNotOk, [&]() {
        std::unique_ptr<Router>& bound = boundRouter();
        if (!bound) {
            bound = Router::bind(display, global_id);
        }
        return bound && bound->display() == display ? static_cast<int>(VAULTPAD_KEY_ROUTER_OK) : kNotOk;
    });
}

void KeyRouter_Finalize(void) {
    boundRouter().reset();
}

int KeyRouter_Reset_KeyList(KeyRouter_KeyList* list) {
    if (list == nullptr) {
        return kNotOk;
    }
    KeyLists::instance().take(list->keys); /* a fresh list has none */
    *list = {};
    return VAULTPAD_KEY_ROUTER_OK;
}

int KeyRouter_Add_All_Key(int mode, KeyRouter_KeyList* list) {
    if (mode != VAULTPAD_KEY_ROUTER_EXCLUSIVE || list == nullptr) {
        return kNotOk;
    }
    return orFailure(kNotOk, [list]() {
        if (list->keys == nullptr) {
            list->keys = KeyLists::instance().add(std::make_shared<KeyNames>());
        }
        return onList(list, [](KeyNames& keys) {
            keys.clear();
            for (const RemoteControlKey& key : remoteControlKeys()) {
                keys.push_back(key.name);
            }
            return true;
        });
    });
}

int KeyRouter_Remove_Key(const char* name, int mode, KeyRouter_KeyList* list) {
    if (mode != VAULTPAD_KEY_ROUTER_EXCLUSIVE || name == nullptr) {
        return kNotOk;
    }
    return onList(list, [name](KeyNames& keys) {
        const auto found =
            std::find_if(keys.begin(), keys.end(), [name](const char* key) { return std::strcmp(key, name) == 0; });
        if (found == keys.end()) {
            return false;
        }
        keys.erase(found);
        return true;
    });
}

int KeyRouter_Set_KeyList(wl_surface* surface, KeyRouter_KeyList* list) {
    return onList(list, [surface](const KeyNames& keys) {
        return surface != nullptr && boundRouter() && boundRouter()->grab(surface, keys);
    });
}

int KeyRouter_UnSet_KeyList(wl_surface* surface, KeyRouter_KeyList* list) {
    return onList(list, [surface](const KeyNames& keys) {
        return surface != nullptr && boundRouter() && boundRouter()->release(surface, keys);
    });
}

void ecore_wl2_sync(void) {
    if (boundRouter()) {
        boundRouter()->roundtrip();
    }
}
