// Settings, paths, orientation, sound, privilege and key router of the double.
#include <vaultpad-platform/bt-audio.h>
#include <vaultpad-platform/cynara.h>
#include <vaultpad-platform/display-rotator.h>
#include <vaultpad-platform/key-router.h>
#include <vaultpad-platform/sensor.h>
#include <vaultpad-platform/sound-manager.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/ui-orientation.h>
#include <vaultpad-platform/vconf.h>

#include <algorithm>
#include <cstring>

#include "platform-double.h"

using vaultpad::test::platform;
using vaultpad::test::Strings;

namespace {

// Handles are addresses of these, so that a stale or invented one is told apart.
int sensorObject;
int listenerObject;
int privilegeObject;

std::string quoted(const char* text) {
    return text != nullptr ? "\"" + std::string(text) + "\"" : "null";
}

Strings* keysOf(KeyRouter_KeyList* list) {
    return static_cast<Strings*>(list->keys);
}

int listenerCall(const char* function, const void* listener) {
    if (const auto code = platform().call(function)) {
        return *code;
    }
    return listener == &listenerObject ? 0 : -1;
}

}  // namespace

int vconf_get_int(const char* key, int* value) {
    if (const auto code = platform().call("vconf_get_int", key)) {
        return *code;
    }
    const auto& settings = platform().television.settings;
    const auto found = settings.find(key);
    if (found == settings.end()) {
        return -1;
    }
    *value = found->second;
    return 0;
}

char* vconf_get_str(const char* key) {
    if (platform().call("vconf_get_str", key) || !platform().television.language) {
        return nullptr;
    }
    return strdup(platform().television.language->c_str());
}

const char* tzplatform_mkpath(int variable, const char* path) {
    if (platform().call("tzplatform_mkpath", std::to_string(variable) + ", " + path)) {
        return nullptr;
    }
    thread_local std::string result;
    result = platform().television.applicationRoot + "/" + path;
    return result.c_str();
}

int ua_UI_orientation_get(void) {
    platform().call("ua_UI_orientation_get");
    return platform().television.uiOrientation;
}

bool display_rotator_is_supported(void) {
    return !platform().call("display_rotator_is_supported") && platform().television.rotatorSupported;
}

int display_rotator_get_status(int* status) {
    if (const auto code = platform().call("display_rotator_get_status")) {
        return *code;
    }
    *status = platform().television.rotatorStatus;
    return 0;
}

int sensor_is_supported(int type, bool* supported) {
    if (const auto code = platform().call("sensor_is_supported", std::to_string(type))) {
        return *code;
    }
    *supported = platform().television.sensorSupported;
    return 0;
}

int sensor_get_default_sensor(int type, sensor_h* sensor) {
    if (const auto code = platform().call("sensor_get_default_sensor", std::to_string(type))) {
        return *code;
    }
    *sensor = &sensorObject;
    return 0;
}

int sensor_create_listener(sensor_h sensor, sensor_listener_h* listener) {
    if (const auto code = platform().call("sensor_create_listener")) {
        return *code;
    }
    if (sensor != &sensorObject) {
        return -1;
    }
    *listener = &listenerObject;
    return 0;
}

int sensor_listener_start(sensor_listener_h listener) {
    return listenerCall("sensor_listener_start", listener);
}

int sensor_listener_read_data(sensor_listener_h listener, sensor_event_s* event) {
    const int result = listenerCall("sensor_listener_read_data", listener);
    if (result == 0) {
        event->value_count = 1;
        event->values[0] = platform().television.sensorValue;
    }
    return result;
}

int sensor_listener_stop(sensor_listener_h listener) {
    return listenerCall("sensor_listener_stop", listener);
}

int sensor_destroy_listener(sensor_listener_h listener) {
    return listenerCall("sensor_destroy_listener", listener);
}

int sound_manager_get_master_volume(int* volume) {
    if (const auto code = platform().call("sound_manager_get_master_volume")) {
        return *code;
    }
    *volume = platform().television.volume;
    return 0;
}

int sound_manager_set_master_volume(int volume) {
    if (const auto code = platform().call("sound_manager_set_master_volume", std::to_string(volume))) {
        return *code;
    }
    platform().television.volume = volume;
    return 0;
}

int sound_manager_get_speaker_selection(int* selection) {
    if (const auto code = platform().call("sound_manager_get_speaker_selection")) {
        return *code;
    }
    *selection = platform().television.speaker;
    return 0;
}

int bt_audio_stop_streaming(void) {
    return platform().call("bt_audio_stop_streaming").value_or(platform().television.bluetoothStop);
}

int cynara_initialize(cynara** handle, const cynara_configuration* configuration) {
    if (const auto code = platform().call("cynara_initialize", configuration == nullptr ? "null" : "configuration")) {
        return *code;
    }
    *handle = reinterpret_cast<cynara*>(&privilegeObject);
    return 0;
}

int cynara_check(cynara* handle, const char* client, const char* client_session, const char* user,
                 const char* privilege) {
    const auto code = platform().call("cynara_check", quoted(client) + ", " + quoted(client_session) + ", " +
                                                          quoted(user) + ", " + quoted(privilege));
    if (code || handle != reinterpret_cast<cynara*>(&privilegeObject)) {
        return code.value_or(-1);
    }
    return platform().television.privilegeAnswer;
}

int cynara_finish(cynara* handle) {
    platform().call("cynara_finish");
    return handle == reinterpret_cast<cynara*>(&privilegeObject) ? 0 : -1;
}

int KeyRouter_Initialize(wl_display* display, wl_registry* registry, wl_seat* seat, unsigned int global_id) {
    const bool complete = display != nullptr && registry != nullptr && seat != nullptr;
    const auto code = platform().call("KeyRouter_Initialize", std::to_string(global_id));
    return code.value_or(complete ? VAULTPAD_KEY_ROUTER_OK : 0);
}

void KeyRouter_Finalize(void) {
    platform().call("KeyRouter_Finalize");
}

int KeyRouter_Reset_KeyList(KeyRouter_KeyList* list) {
    if (const auto code = platform().call("KeyRouter_Reset_KeyList")) {
        return *code;
    }
    delete keysOf(list);
    list->keys = nullptr;
    list->count = 0;
    return VAULTPAD_KEY_ROUTER_OK;
}

int KeyRouter_Add_All_Key(int mode, KeyRouter_KeyList* list) {
    if (const auto code = platform().call("KeyRouter_Add_All_Key", std::to_string(mode))) {
        return *code;
    }
    delete keysOf(list);
    list->keys = new Strings(platform().television.remoteKeys);
    list->count = static_cast<unsigned int>(keysOf(list)->size());
    return VAULTPAD_KEY_ROUTER_OK;
}

int KeyRouter_Remove_Key(const char* name, int mode, KeyRouter_KeyList* list) {
    if (const auto code = platform().call("KeyRouter_Remove_Key", std::string(name) + ", " + std::to_string(mode))) {
        return *code;
    }
    Strings& keys = *keysOf(list);
    keys.erase(std::remove(keys.begin(), keys.end(), name), keys.end());
    list->count = static_cast<unsigned int>(keys.size());
    return VAULTPAD_KEY_ROUTER_OK;
}

int KeyRouter_Set_KeyList(wl_surface* surface, KeyRouter_KeyList* list) {
    if (const auto code = platform().call("KeyRouter_Set_KeyList", surface != nullptr ? "surface" : "null")) {
        return *code;
    }
    platform().grabbedKeys = *keysOf(list);
    return VAULTPAD_KEY_ROUTER_OK;
}

int KeyRouter_UnSet_KeyList(wl_surface* surface, KeyRouter_KeyList* list) {
    if (const auto code = platform().call("KeyRouter_UnSet_KeyList", surface != nullptr ? "surface" : "null")) {
        return *code;
    }
    return list->keys != nullptr ? VAULTPAD_KEY_ROUTER_OK : 0;
}

void ecore_wl2_sync(void) {
    platform().call("ecore_wl2_sync");
}
