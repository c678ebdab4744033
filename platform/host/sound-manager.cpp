#include <vaultpad-platform/sound-manager.h>

#include <memory>
#include <mutex>

#include "call-guard.h"
#include "television.h"

namespace {

using vaultpad::host::kFailure;
using vaultpad::host::Television;

/* The volume as this process has changed it; it belongs to one television, and another one starts anew. */
struct ChangedVolume {
    std::mutex mutex;
    std::weak_ptr<const Television> television;
    int volume = 0;
};

ChangedVolume& changedVolume() {
    static auto* const changed = new ChangedVolume; /* usable until the process is gone */
    return *changed;
}

}  // namespace

int sound_manager_get_master_volume(int* volume) {
    const auto settings = vaultpad::host::television();
    if (!settings || volume == nullptr) {
        return kFailure;
    }
    ChangedVolume& changed = changedVolume();
    const std::lock_guard lock(changed.mutex);
    *volume = changed.television.lock() == settings ? changed.volume : settings->volume;
    return 0;
}

int sound_manager_set_master_volume(int volume) {
    const auto settings = vaultpad::host::television();
    if (!settings || volume < 0 || volume > VAULTPAD_VOLUME_MAX) {
        return kFailure;
    }
    ChangedVolume& changed = changedVolume();
    const std::lock_guard lock(changed.mutex);
    changed.television = settings;
    changed.volume = volume;
    return 0;
}

int sound_manager_get_speaker_selection(int* selection) {
    const auto settings = vaultpad::host::television();
    if (!settings || selection == nullptr) {
        return kFailure;
    }
    *selection = settings->speaker;
    return 0;
}
