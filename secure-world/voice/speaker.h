// Speaks clips by their ids.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_SPEAKER_H
#define VAULTPAD_SECURE_WORLD_VOICE_SPEAKER_H

#include <string>
#include <vector>

#include "log.h"
#include "voice/voice-clips.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {

class Speaker {
public:
    // output and log must outlive the speaker.
    Speaker(VoiceOutput* output, Log* log) : output_(output), log_(log) {}

    // Takes a whole batch or, throwing Refusal, nothing.
    void add(const std::vector<VoiceClip>& batch) { clips_.add(batch); }

    // Speaks the clips with these ids, as far as there are any, in the place of what is being spoken. A failure is
    // logged: the pad works without its voice.
    void speak(const std::vector<std::string>& ids);

private:
    VoiceOutput* output_;
    Log* log_;
    VoiceClips clips_;
};

}  // namespace vaultpad::secureworld

#endif
