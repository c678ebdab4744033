#include "wayland-remote.h"

#include <Ecore.h>
#include <Ecore_Input.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vaultpad_demo {

namespace {

using vaultpad::compositor::CompositorProcess;

constexpr const char* kDisplayVariable = "WAYLAND_DISPLAY";
constexpr std::chrono::seconds kPatience{10};
constexpr double kLoopSeconds = 0.01;

// xkbcommon has no keysym of this name, so that EFL knows the key by its code alone: the kernel's KEY_EXIT + 8.
constexpr unsigned int kExitKeyCode = 182;

class WaylandRemote : public RemoteControl {
public:
    WaylandRemote(std::unique_ptr<RemoteControl> hand, CompositorProcess& compositor)
        : hand_(std::move(hand)), compositor_(compositor) {
        setenv(kDisplayVariable, compositor_.display().c_str(), 1);
        ecore_app_no_system_modules();
        ecore_event_init();
        handler_ = ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, onKey, this);
    }
    ~WaylandRemote() override {
        ecore_event_handler_del(handler_);
        ecore_event_shutdown();
    }
    WaylandRemote(const WaylandRemote&) = delete;
    WaylandRemote& operator=(const WaylandRemote&) = delete;

    std::optional<KeyPress> next() override {
        std::optional<KeyPress> key = hand_->next();
        if (!key || key->name.empty()) {
            return key;
        }
        const auto deadline = std::chrono::steady_clock::now() + kPatience;
        received_.reset();
        tap(key->name, deadline);
        while (!received_) {
            runLoop(deadline);
        }
        return std::exchange(received_, std::nullopt);
    }

private:
    // The pad's first key may come before EFL has asked for the keyboard; then nobody received it.
    void tap(const std::string& name, std::chrono::steady_clock::time_point deadline) {
        const std::string pressed = "key " + name + " pressed " + std::to_string(getpid()) + " grab";
        for (;;) {
            const std::vector<std::string> lines = compositor_.command("tap " + name);
            if (std::find(lines.begin(), lines.end(), pressed) != lines.end()) {
                return;
            }
            runLoop(deadline);
        }
    }

    static void runLoop(std::chrono::steady_clock::time_point deadline) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the key did not arrive: is the pad's client the one that grabbed the keys?");
        }
        Ecore_Timer* const timer = ecore_timer_add(
            kLoopSeconds, [](void*) { return ECORE_CALLBACK_RENEW; }, nullptr);
        ecore_main_loop_iterate_may_block(1);
        ecore_timer_del(timer);
    }

    static Eina_Bool onKey(void* data, int, void* event) {
        const auto* const key = static_cast<const Ecore_Event_Key*>(event);
        static_cast<WaylandRemote*>(data)->received_ =
            KeyPress{key->keycode == kExitKeyCode ? "XF86Exit" : key->keyname};
        return ECORE_CALLBACK_PASS_ON;
    }

    const std::unique_ptr<RemoteControl> hand_;
    CompositorProcess& compositor_;
    Ecore_Event_Handler* handler_ = nullptr;
    std::optional<KeyPress> received_;
};

}  // namespace

std::string compositorBesideThisProgram() {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / "vaultpad-compositor").string();
}

std::unique_ptr<RemoteControl> makeWaylandRemote(std::unique_ptr<RemoteControl> hand, CompositorProcess& compositor) {
    return std::make_unique<WaylandRemote>(std::move(hand), compositor);
}

}  // namespace vaultpad_demo
