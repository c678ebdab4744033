#include <vaultpad-platform/vconf.h>

#include <cstring>
#include <string_view>

#include "call-guard.h"
#include "call-trace.h"
#include "television.h"

namespace {

using vaultpad::host::Television;

struct IntegerSetting {
    std::string_view key;
    int Television::*member;
};

constexpr IntegerSetting kIntegerSettings[] = {
    {"db/menu/system/accessibility/focuszoom", &Television::focusZoom},
    {"db/menu/system/accessibility/highcontrast", &Television::highContrast},
    {"memory/bluetooth/stream_status", &Television::bluetoothStreaming},
};

constexpr std::string_view kLanguageKey = "db/menu_widget/language";

}  // namespace

int vconf_get_int(const char* key, int* value) {
    const vaultpad::host::CallTrace trace(__func__, key == nullptr ? "" : key);
    const auto settings = vaultpad::host::television();
    if (!settings || key == nullptr || value == nullptr) {
        return vaultpad::host::kFailure;
    }
    for (const IntegerSetting& setting : kIntegerSettings) {
        if (setting.key == key) {
            *value = (*settings).*setting.member;
            return 0;
        }
    }
    return vaultpad::host::kFailure;
}

char* vconf_get_str(const char* key) {
    const vaultpad::host::CallTrace trace(__func__, key == nullptr ? "" : key);
    const auto settings = vaultpad::host::television();
    return settings && key != nullptr && kLanguageKey == key ? strdup(settings->language.c_str()) : nullptr;
}
