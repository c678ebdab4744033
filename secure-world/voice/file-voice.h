// Voice output files: one WAV file for each spoken clip.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_FILE_VOICE_H
#define VAULTPAD_SECURE_WORLD_VOICE_FILE_VOICE_H

#include <string>
#include <string_view>
#include <vector>

#include "numbered-files.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {

class FileVoice : public VoiceOutput {
public:
    // Throws std::runtime_error when the folder cannot be written to.
    explicit FileVoice(const std::string& folder);

    void speak(const std::vector<VoiceClip>& clips) override;

private:
    NumberedFiles files_;
};

// The id as a part of a file's name: every character but letters, digits, '-', '_' and '.' becomes '_', and a long one
// is cut.
std::string fileNamePart(std::string_view id);

}  // namespace vaultpad::secureworld

#endif
