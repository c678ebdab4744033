// Where the voice guide's clips go when they are spoken.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_VOICE_OUTPUT_H
#define VAULTPAD_SECURE_WORLD_VOICE_VOICE_OUTPUT_H

#include <memory>
#include <string>
#include <vector>

#include "log.h"
#include "voice/voice-clips.h"

namespace vaultpad::secureworld {

class VoiceOutput {
public:
    virtual ~VoiceOutput() = default;

    // Speaks the clips, first to last, in the place of what is being spoken; no clips: silence. None of them is empty.
    // Throws std::runtime_error; its text must not tell the clips' ids, which are the focused keys.
    virtual void speak(const std::vector<VoiceClip>& clips) = 0;
};

struct VoiceSettings {
    std::string output = "none";  // none, files or player
    std::string folder;           // files: where they go
    std::string player;           // player: the program
};

// log must outlive the output. Throws std::runtime_error with a line for the log when the output cannot work.
std::unique_ptr<VoiceOutput> makeVoiceOutput(const VoiceSettings& settings, Log* log);

}  // namespace vaultpad::secureworld

#endif
