#include "voice/voice-output.h"

#include "voice/file-voice.h"
#include "voice/player-voice.h"

namespace vaultpad::secureworld {

namespace {

class NoVoice : public VoiceOutput {
public:
    void speak(const std::vector<VoiceClip>&) override {}
};

}  // namespace

std::unique_ptr<VoiceOutput> makeVoiceOutput(const VoiceSettings& settings, Log* log) {
    if (settings.output == "files") {
        return std::make_unique<FileVoice>(settings.folder);
    }
    if (settings.output == "player") {
        return std::make_unique<PlayerVoice>(settings.player, log);
    }
    return std::make_unique<NoVoice>();
}

}  // namespace vaultpad::secureworld
