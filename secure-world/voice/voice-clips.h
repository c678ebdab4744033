// The voice guide's clips, inflated and checked.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_VOICE_CLIPS_H
#define VAULTPAD_SECURE_WORLD_VOICE_VOICE_CLIPS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vaultpad::secureworld {

using Sound = std::vector<std::uint8_t>;

struct VoiceClip {
    std::string id;
    std::shared_ptr<const Sound> sound;  // a wave file (see wave-file.h), or empty: says nothing
};

class VoiceClips {
public:
    static constexpr std::size_t kIdLengthMax = 511;
    static constexpr std::size_t kClipsMax = 1024;
    // A minute and a half of sound, and twenty-five minutes: the client must not make this process take as much memory
    // as it likes.
    static constexpr std::uint32_t kSoundSizeMax = std::uint32_t{4} * 1024 * 1024;
    static constexpr std::size_t kBytesMax = std::size_t{64} * 1024 * 1024;

    // Takes a whole batch or, throwing Refusal, nothing. A clip replaces the one with the same id.
    void add(const std::vector<VoiceClip>& batch);

    // The clip with this id, null when there is none or it says nothing.
    const VoiceClip* find(const std::string& id) const;

private:
    std::map<std::string, VoiceClip> clips_;
};

}  // namespace vaultpad::secureworld

#endif
