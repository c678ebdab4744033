#include "session/voice-clips.h"

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
        bytes += entry.second.compressed.size();
    }
    if (clips.size() > kClipsMax || bytes > kCompressedBytesMax) {
        throw Refusal("the voice clips exceed " + std::to_string(kClipsMax) + " clips or " +
                      std::to_string(kCompressedBytesMax) + " bytes");
    }
    clips_ = std::move(clips);
}

}  // namespace vaultpad::secureworld
