// A user who presses any key that comes: what follows is foreseen by the trusted application's own rules.
#include <vaultpad/ta-protocol.h>

#include <utility>

#include "pad/pad-entry.h"
#include "session.h"

namespace vaultpad::soak {

namespace {

using secureworld::PadEntry;

constexpr int kMostKeys = 40;

struct RemoteKey {
    const char* name;
    std::uint32_t code; /* 0: not forwarded */
    int weight;
    bool leaves;
};
constexpr RemoteKey kRemoteKeys[] = {
    {"Return", VAULTPAD_TA_KEY_RETURN, 30, false},
    {"Up", VAULTPAD_TA_KEY_UP, 12, false},
    {"Down", VAULTPAD_TA_KEY_DOWN, 20, false},
    {"Left", VAULTPAD_TA_KEY_LEFT, 12, false},
    {"Right", VAULTPAD_TA_KEY_RIGHT, 16, false},
    {"XF86AudioRaiseVolume", 0, 4, false},
    {"XF86Red", 0, 4, false},
    {"XF86Back", 0, 1, true},
    {"XF86Exit", 0, 1, true},
};

const RemoteKey& keyAt(int weight) {
    const RemoteKey* key = kRemoteKeys;
    while (weight >= key->weight) {
        weight -= key->weight;
        ++key;
    }
    return *key;
}

std::u16string textOf(PadEntry& entry) {
    std::vector<std::uint8_t> bytes(entry.text().size() * secureworld::TypedText::kCharacterSize);
    entry.text().encode(bytes.data());
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size(); i += secureworld::TypedText::kCharacterSize) {
        text += static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8);
    }
    return text;
}

}  // namespace

// Nothing when the session is still open at the end; an empty text when the pad was left.
std::optional<std::u16string> SessionRunner::wander(const Plan& plan, PadWalk& walk, Report& report) {
    PadEntry entry(walk.pad(), static_cast<std::size_t>(plan.digits));
    for (int i = 0; i < kMostKeys; ++i) {
        const RemoteKey& key = keyAt(pick(0, 99));
        const PadEntry::Effect effect = key.code != 0 ? entry.press(key.code) : PadEntry::Effect::Nothing;
        const bool completed = effect == PadEntry::Effect::Completed;
        const bool ends = completed || effect == PadEntry::Effect::Cancelled || key.leaves;
        if (!pressWay(key.name, ends, report)) {
            return std::nullopt;
        }
        if (ends) {
            return completed ? textOf(entry) : std::u16string();
        }
    }
    return std::nullopt;
}

}  // namespace vaultpad::soak
