#include "key-routing.h"

#include <algorithm>

#include "../host/key-router-keys.h"

namespace vaultpad::compositor {

namespace {

bool isKey(const std::string& name) {
    const auto& keys = host::remoteControlKeys();
    return std::any_of(keys.begin(), keys.end(),
                       [&name](const host::RemoteControlKey& key) { return name == key.name; });
}

template <typename Map, typename Condition>
void eraseIf(Map& map, Condition condition) {
    for (auto entry = map.begin(); entry != map.end();) {
        entry = condition(entry->second) ? map.erase(entry) : std::next(entry);
    }
}

}  // namespace

void KeyRouting::mapped(SurfaceId surface, ClientId client) {
    windows_.push_back({surface, client});
    if (!grabs(surface)) {
        setFocus(windows_.back());
    }
}

void KeyRouting::unmapped(SurfaceId surface) {
    windows_.erase(std::remove_if(windows_.begin(), windows_.end(),
                                  [surface](const Window& window) { return window.surface == surface; }),
                   windows_.end());
    if (focus_.surface == surface) {
        focusLatest();
    }
}

void KeyRouting::destroyed(SurfaceId surface) {
    releaseHeld([surface](const HeldKey& key) { return key.receiver.surface == surface; });
    eraseIf(grabs_, [surface](const Window& holder) { return holder.surface == surface; });
    const auto entered = std::find_if(entered_.begin(), entered_.end(),
                                      [surface](const auto& entry) { return entry.second == surface; });
    ClientId client = nullptr;
    if (entered != entered_.end()) {
        /* No word about leaving: there will be no surface to name. */
        client = entered->first;
        entered_.erase(entered);
    }
    unmapped(surface);
    if (client != nullptr) {
        update(client);
    }
}

void KeyRouting::clientGone(ClientId client) {
    for (auto& [name, key] : held_) {
        if (key.receiver.client == client) {
            key = {};
        }
    }
    eraseIf(grabs_, [client](const Window& holder) { return holder.client == client; });
    entered_.erase(client);
    windows_.erase(std::remove_if(windows_.begin(), windows_.end(),
                                  [client](const Window& window) { return window.client == client; }),
                   windows_.end());
    if (focus_.client == client) {
        focus_ = {};
        focusLatest();
    }
}

bool KeyRouting::focusClient(ClientId client) {
    const auto window = std::find_if(windows_.rbegin(), windows_.rend(),
                                     [client](const Window& candidate) { return candidate.client == client; });
    if (window == windows_.rend()) {
        return false;
    }
    setFocus(*window);
    return true;
}

std::vector<KeyResult> KeyRouting::grab(SurfaceId surface, ClientId client, const std::vector<std::string>& names) {
    std::vector<KeyResult> results;
    bool all = true;
    for (const std::string& name : names) {
        const auto holder = grabs_.find(name);
        const bool taken = holder != grabs_.end() && holder->second.surface != surface;
        results.push_back(!isKey(name) ? KeyResult::kInvalidKey : taken ? KeyResult::kRefused : KeyResult::kOk);
        all = all && results.back() == KeyResult::kOk;
    }
    if (all) {
        for (const std::string& name : names) {
            grabs_[name] = {surface, client};
        }
        update(client);
    }
    return results;
}

std::vector<KeyResult> KeyRouting::ungrab(SurfaceId surface, const std::vector<std::string>& names) {
    std::vector<KeyResult> results;
    ClientId client = nullptr;
    for (const std::string& name : names) {
        results.push_back(isKey(name) ? KeyResult::kOk : KeyResult::kInvalidKey);
        const auto holder = grabs_.find(name);
        if (holder != grabs_.end() && holder->second.surface == surface) {
            client = holder->second.client;
            grabs_.erase(holder);
        }
    }
    if (client != nullptr) {
        update(client);
    }
    return results;
}

std::size_t KeyRouting::grabsOf(ClientId client) const {
    return static_cast<std::size_t>(std::count_if(grabs_.begin(), grabs_.end(),
                                                  [client](const auto& grab) { return grab.second.client == client; }));
}

bool KeyRouting::press(const std::string& name) {
    if (held_.count(name) != 0) {
        return false;
    }
    HeldKey key;
    const auto holder = grabs_.find(name);
    if (holder != grabs_.end()) {
        key = {{enteredOf(holder->second.client), holder->second.client}, Reason::kGrab};
    } else if (focus_.surface != nullptr) {
        key = {focus_, Reason::kFocus};
    }
    if (key.receiver.client == nullptr || !sink_.key(key.receiver.client, name, true, key.reason)) {
        key = {};
        sink_.key(nullptr, name, true, Reason::kNobody);
    }
    held_[name] = key;
    return true;
}

bool KeyRouting::release(const std::string& name) {
    const auto found = held_.find(name);
    if (found == held_.end()) {
        return false;
    }
    const HeldKey key = found->second;
    held_.erase(found);
    sink_.key(key.receiver.client, name, false, key.reason);
    if (key.receiver.client != nullptr) {
        update(key.receiver.client);
    }
    return true;
}

SurfaceId KeyRouting::enteredOf(ClientId client) const {
    const auto entered = entered_.find(client);
    return entered != entered_.end() ? entered->second : nullptr;
}

bool KeyRouting::grabs(SurfaceId surface) const {
    return std::any_of(grabs_.begin(), grabs_.end(),
                       [surface](const auto& grab) { return grab.second.surface == surface; });
}

/* A key that is still down keeps its surface: the release must be seen where the press was. */
SurfaceId KeyRouting::keyboardSurfaceOf(ClientId client) const {
    if (focus_.client == client) {
        return focus_.surface;
    }
    for (const auto& [name, key] : held_) {
        if (key.receiver.client == client) {
            return key.receiver.surface;
        }
    }
    for (const auto& [name, holder] : grabs_) {
        if (holder.client == client) {
            return holder.surface;
        }
    }
    return nullptr;
}

void KeyRouting::update(ClientId client) {
    const SurfaceId before = enteredOf(client);
    const SurfaceId after = keyboardSurfaceOf(client);
    if (before == after) {
        return;
    }
    if (before != nullptr) {
        releaseHeld([before](const HeldKey& key) { return key.receiver.surface == before; });
        entered_.erase(client);
        sink_.leave(client, before);
    }
    if (after != nullptr) {
        entered_[client] = after;
        sink_.enter(client, after);
    }
}

void KeyRouting::setFocus(Window window) {
    if (window.surface == focus_.surface) {
        return;
    }
    releaseHeld([](const HeldKey& key) { return key.reason == Reason::kFocus; });
    const ClientId before = focus_.client;
    focus_ = window;
    sink_.focusChanged(window.client);
    if (before != nullptr) {
        update(before);
    }
    if (window.client != nullptr && window.client != before) {
        update(window.client);
    }
}

void KeyRouting::focusLatest() {
    const auto window = std::find_if(windows_.rbegin(), windows_.rend(),
                                     [this](const Window& candidate) { return !grabs(candidate.surface); });
    setFocus(window != windows_.rend() ? *window : Window{});
}

/* Lifting the key itself, later, reaches nobody. */
template <typename Condition>
void KeyRouting::releaseHeld(Condition condition) {
    for (auto& [name, key] : held_) {
        if (key.receiver.client != nullptr && condition(key)) {
            sink_.key(key.receiver.client, name, false, key.reason);
            key = {};
        }
    }
}

}  // namespace vaultpad::compositor
