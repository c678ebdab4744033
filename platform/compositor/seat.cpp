#include "seat.h"

#include <wayland-server-protocol.h>

#include <algorithm>
#include <ctime>
#include <utility>

#include "resource.h"

namespace vaultpad::compositor {

namespace {

constexpr int kSeatVersion = 5;
constexpr const char* kSeatName = "seat0";

/* libwayland's functions take their objects without const. */
wl_client* clientOf(ClientId client) {
    return static_cast<wl_client*>(const_cast<void*>(client));
}
wl_resource* surfaceOf(SurfaceId surface) {
    return static_cast<wl_resource*>(const_cast<void*>(surface));
}

uint32_t nowMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1000000);
}

const char* wordOf(Reason reason) {
    switch (reason) {
        case Reason::kGrab:
            return "grab";
        case Reason::kFocus:
            return "focus";
        case Reason::kNobody:
            break;
    }
    return "nobody";
}

void ignoreCursor(wl_client*, wl_resource*, uint32_t, wl_resource*, int32_t, int32_t) {}

/* The seat has keys only; what is asked for beside them never says anything. */
void getPointer(wl_client* client, wl_resource* seat, uint32_t id) {
    static constexpr struct wl_pointer_interface kPointer = {ignoreCursor, destroyResource};
    makeResource(client, &wl_pointer_interface, wl_resource_get_version(seat), id, &kPointer, nullptr);
}

void getTouch(wl_client* client, wl_resource* seat, uint32_t id) {
    static constexpr struct wl_touch_interface kTouch = {destroyResource};
    makeResource(client, &wl_touch_interface, wl_resource_get_version(seat), id, &kTouch, nullptr);
}

}  // namespace

Seat::Seat(wl_display* display, std::function<void(const std::string&)> say) : display_(display), say_(std::move(say)) {
    wl_global_create(display, &wl_seat_interface, kSeatVersion, this, bindSeat);
}

void Seat::bindSeat(wl_client* client, void* data, uint32_t version, uint32_t id) {
    static constexpr struct wl_seat_interface kSeat = {getPointer, getKeyboard, getTouch, destroyResource};
    wl_resource* const seat = makeResource(client, &wl_seat_interface, static_cast<int>(version), id, &kSeat, data);
    if (seat == nullptr) {
        return;
    }
    wl_seat_send_capabilities(seat, WL_SEAT_CAPABILITY_KEYBOARD);
    if (version >= WL_SEAT_NAME_SINCE_VERSION) {
        wl_seat_send_name(seat, kSeatName);
    }
}

void Seat::getKeyboard(wl_client* client, wl_resource* seat, uint32_t id) {
    static constexpr struct wl_keyboard_interface kKeyboard = {destroyResource};
    auto* const self = static_cast<Seat*>(wl_resource_get_user_data(seat));
    const int version = wl_resource_get_version(seat);
    wl_resource* const keyboard =
        makeResource(client, &wl_keyboard_interface, version, id, &kKeyboard, self, [](wl_resource* gone) {
            auto& all = static_cast<Seat*>(wl_resource_get_user_data(gone))->keyboards_;
            all.erase(std::remove(all.begin(), all.end(), gone), all.end());
        });
    if (keyboard == nullptr) {
        return;
    }
    self->keyboards_.push_back(keyboard);
    wl_keyboard_send_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, self->keymap_.fd.get(), self->keymap_.size);
    if (version >= WL_KEYBOARD_REPEAT_INFO_SINCE_VERSION) {
        /* Off: a slow client must not see a key twice. */
        wl_keyboard_send_repeat_info(keyboard, 0, 0);
    }
    if (const SurfaceId surface = self->routing_.enteredOf(client)) {
        self->sendEnter(keyboard, surface);
    }
}

void Seat::sendEnter(wl_resource* keyboard, SurfaceId surface) {
    wl_array none;
    wl_array_init(&none);
    wl_keyboard_send_enter(keyboard, wl_display_next_serial(display_), surfaceOf(surface), &none);
    wl_array_release(&none);
    wl_keyboard_send_modifiers(keyboard, wl_display_next_serial(display_), 0, 0, 0, 0);
}

template <typename Send>
bool Seat::toKeyboardsOf(ClientId client, Send send) {
    bool any = false;
    for (wl_resource* const keyboard : keyboards_) {
        if (wl_resource_get_client(keyboard) == client) {
            send(keyboard);
            any = true;
        }
    }
    return any;
}

void Seat::enter(ClientId client, SurfaceId surface) {
    toKeyboardsOf(client, [&](wl_resource* keyboard) { sendEnter(keyboard, surface); });
}

void Seat::leave(ClientId client, SurfaceId surface) {
    toKeyboardsOf(client, [&](wl_resource* keyboard) {
        wl_keyboard_send_leave(keyboard, wl_display_next_serial(display_), surfaceOf(surface));
    });
}

bool Seat::key(ClientId client, const std::string& name, bool pressed, Reason reason) {
    const uint32_t state = pressed ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED;
    const bool received = toKeyboardsOf(client, [&](wl_resource* keyboard) {
        wl_keyboard_send_key(keyboard, wl_display_next_serial(display_), nowMilliseconds(), codeOf(name), state);
    });
    if (received || reason == Reason::kNobody) {
        say_("key " + name + (pressed ? " pressed " : " released ") + std::to_string(pidOf(client)) + " " +
             wordOf(reason));
    }
    return received;
}

void Seat::focusChanged(ClientId client) {
    say_("focus " + std::to_string(pidOf(client)));
}

pid_t pidOf(ClientId client) {
    pid_t pid = 0;
    if (client != nullptr) {
        wl_client_get_credentials(clientOf(client), &pid, nullptr, nullptr);
    }
    return pid;
}

}  // namespace vaultpad::compositor
