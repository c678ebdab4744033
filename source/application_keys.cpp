// Key events: forwarded to the trusted application, or handled here.
#include <vaultpad-platform/sound-manager.h>
#include <vaultpad/ta-protocol.h>

#include <cstring>
#include <string_view>

#include "application.h"
#include "audio/voice-guide.h"
#include "log.h"
#include "result-record.h"

namespace vaultpad {

using audio::VoiceGuide;

namespace {

// Events of this type are no key presses.
constexpr int kIgnoredEventType = 3;
constexpr const char* kRaiseVolume = "XF86AudioRaiseVolume";

struct ForwardedKey {
    std::string_view name;
    int code;
};

constexpr ForwardedKey kForwardedKeys[] = {
    {"Return", VAULTPAD_TA_KEY_RETURN}, {"Up", VAULTPAD_TA_KEY_UP},     {"Left", VAULTPAD_TA_KEY_LEFT},
    {"Right", VAULTPAD_TA_KEY_RIGHT},   {"Down", VAULTPAD_TA_KEY_DOWN},
};
constexpr std::string_view kLeavingKeys[] = {"XF86Back", "XF86Exit", "XF86PowerOff", "XF86LFDPowerOff"};
constexpr std::string_view kVolumeKeys[] = {kRaiseVolume, "XF86AudioLowerVolume"};

template <std::size_t N>
bool contains(const std::string_view (&names)[N], std::string_view name) {
    for (const std::string_view candidate : names) {
        if (candidate == name) {
            return true;
        }
    }
    return false;
}

}  // namespace

int Application::vault_pad_event(int event_type, void* event_data, AppResult* result) {
    if (event_type == kIgnoredEventType) {
        return 0;
    }
    const char* const* namePointer = static_cast<const char* const*>(event_data);
    if (namePointer == nullptr || *namePointer == nullptr) {
        CA_LOG_ERROR("key event without a key name");
        return -1;
    }
    const std::string_view name = *namePointer;
    for (const ForwardedKey& key : kForwardedKeys) {
        if (key.name == name) {
            return tee_->send_key_event(event_type, key.code, result, &button_pressed_, &closed_);
        }
    }
    if (contains(kLeavingKeys, name)) {
        leave(result);
        return 0;
    }
    if (contains(kVolumeKeys, name)) {
        changeVolume(*namePointer);
    } else {
        CA_LOG_ERROR("this key input is not supported : %s", *namePointer);
    }
    button_pressed_ = true;
    closed_ = false;
    return 0;
}

void Application::leave(AppResult* result) {
    button_pressed_ = true;
    closed_ = true;
    clearAnswerWords(*result);
}

// The volume is the client's affair; only while the guide speaks do its keys work from within the pad.
void Application::changeVolume(const char* keyName) {
    if (!VoiceGuide::instance().enabled()) {
        return;
    }
    int volume = 0;
    if (sound_manager_get_master_volume(&volume) != 0) {
        CA_LOG_ERROR("Failed to get master volume");
        return;
    }
    const bool raise = std::strncmp(keyName, kRaiseVolume, std::strlen(keyName)) == 0;
    volume += raise ? 1 : -1;
    // As an unsigned number -1 is out of range too: at either end the volume stays.
    if (static_cast<unsigned int>(volume) <= VAULTPAD_VOLUME_MAX && sound_manager_set_master_volume(volume) != 0) {
        CA_LOG_ERROR("Failed to set master volume");
    }
}

}  // namespace vaultpad
