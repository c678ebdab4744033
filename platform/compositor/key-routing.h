/*
 * Which client receives a key. Knows clients and surfaces by their addresses only, so that the rules can be tested
 * without Wayland.
 *
 * A key goes to the surface that grabbed it, else to the focused one, else to nobody. Its release follows its press,
 * whatever happened in between. A client is told of one surface that it has the keyboard: its focused one, or, while it
 * grabs keys, a grabbing one; toolkits drop the keys of a client without. What a surface saw pressed it sees released
 * before it loses the keyboard or goes.
 */
#ifndef VAULTPAD_COMPOSITOR_KEY_ROUTING_H
#define VAULTPAD_COMPOSITOR_KEY_ROUTING_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vaultpad::compositor {

using ClientId = const void*;
using SurfaceId = const void*;

enum class Reason { kGrab, kFocus, kNobody };

/* Values of the key router protocol. */
enum class KeyResult : uint32_t { kOk = 0, kInvalidKey = 1, kInvalidMode = 2, kRefused = 3 };

/* What the routing tells the clients. */
class KeySink {
public:
    virtual ~KeySink() = default;
    virtual void enter(ClientId client, SurfaceId surface) = 0;
    virtual void leave(ClientId client, SurfaceId surface) = 0;
    /* Null client: nobody. Returns false when the client has no keyboard to receive it on. */
    virtual bool key(ClientId client, const std::string& name, bool pressed, Reason reason) = 0;
    virtual void focusChanged(ClientId client) = 0;
};

class KeyRouting {
public:
    explicit KeyRouting(KeySink& sink) : sink_(sink) {}
    KeyRouting(const KeyRouting&) = delete;
    KeyRouting& operator=(const KeyRouting&) = delete;

    /* A window appears: it takes the focus, unless it grabs keys and so needs none. */
    void mapped(SurfaceId surface, ClientId client);
    /* It disappears: the focus goes to the latest window that is left. Grabs stay. */
    void unmapped(SurfaceId surface);
    /* A surface is about to go, with its grabs. */
    void destroyed(SurfaceId surface);
    /* A client is gone already: nothing is sent to it. */
    void clientGone(ClientId client);

    /* Gives the focus to the client's latest window; false when it has none. */
    bool focusClient(ClientId client);
    ClientId focusedClient() const { return focus_.client; }

    /* Grabs all the keys or, when one of them cannot be had, none. Answers for each key, in their order. */
    std::vector<KeyResult> grab(SurfaceId surface, ClientId client, const std::vector<std::string>& names);
    std::vector<KeyResult> ungrab(SurfaceId surface, const std::vector<std::string>& names);
    std::size_t grabsOf(ClientId client) const;

    /* False, and nothing done: the key is down already, or is not down. */
    bool press(const std::string& name);
    bool release(const std::string& name);

    /* Which of the client's surfaces has the keyboard; null: none. */
    SurfaceId enteredOf(ClientId client) const;

private:
    struct Window {
        SurfaceId surface = nullptr;
        ClientId client = nullptr;
    };
    struct HeldKey {
        Window receiver;
        Reason reason = Reason::kNobody;
    };

    bool grabs(SurfaceId surface) const;
    SurfaceId keyboardSurfaceOf(ClientId client) const;
    void update(ClientId client);
    void setFocus(Window window);
    void focusLatest();
    template <typename Condition>
    void releaseHeld(Condition condition);

    KeySink& sink_;
    std::vector<Window> windows_; /* mapped, the latest last */
    Window focus_;
    std::map<std::string, Window> grabs_;
    std::map<std::string, HeldKey> held_;
    std::map<ClientId, SurfaceId> entered_;
};

}  // namespace vaultpad::compositor

#endif
