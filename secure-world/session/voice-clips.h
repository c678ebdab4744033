// The voice guide's clips. They are kept compressed; nothing plays them yet.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_VOICE_CLIPS_H
#define VAULTPAD_SECURE_WORLD_SESSION_VOICE_CLIPS_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vaultpad::secureworld {

struct VoiceClip {
    std::string id;
    std::uint32_t size = 0;                // bytes of the sound once inflated
    std::vector<std::uint8_t> compressed;  // a copy: a clip must not keep its whole batch in memory
};

class VoiceClips {
public:
    static constexpr std::size_t kIdLengthMax = 511;
    static constexpr std::size_t kClipsMax = 1024;
    static constexpr std::uint32_t kSizeMax = std::uint32_t{64} * 1024 * 1024;          // of one inflated clip
    static constexpr std::size_t kCompressedBytesMax = std::size_t{128} * 1024 * 1024;  // of all clips

    // Takes a whole batch or, throwing Refusal, nothing. A clip replaces the one with the same id.
    void add(const std::vector<VoiceClip>& batch);

    const std::map<std::string, VoiceClip>& clips() const { return clips_; }

private:
    std::map<std::string, VoiceClip> clips_;
};

}  // namespace vaultpad::secureworld

#endif
