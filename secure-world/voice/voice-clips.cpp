#include "voice/voice-clips.h"

#include <utility>

#include "session/refusal.h"

namespace vaultpad::secureworld {

void VoiceClips::add(const std::vector<VoiceClip>& batch) {
    std::map<std::string, VoiceClip> clips = clips_;
    for (const VoiceClip& clip : batch) {
        clips[clip.id] = clip;
    }
    std::size_t bytes = 0;
    for (const auto& entry : clips) {
        bytes += entry.second.sound->size();
    }
    if (clips.size() > kClipsMax || bytes > kBytesMax) {
        throw Refusal("the voice clips exceed " + std::to_string(kClipsMax) + " clips or " + std::to_string(kBytesMax) +
                      " bytes");
    }
    clips_ = std::move(clips);
}

const VoiceClip* VoiceClips::find(const std::string& id) const {
    const auto found = clips_.find(id);
    return found == clips_.end() || found->second.sound->empty() ? nullptr : &found->second;
}

}  // namespace vaultpad::secureworld
