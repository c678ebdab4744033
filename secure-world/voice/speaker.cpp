#include "voice/speaker.h"

#include <exception>

namespace vaultpad::secureworld {

void Speaker::speak(const std::vector<std::string>& ids) {
    try {
        std::vector<VoiceClip> clips;
        for (const std::string& id : ids) {
            if (const VoiceClip* clip = clips_.find(id)) {
                clips.push_back(*clip);
            }
        }
        output_->speak(clips);
    } catch (const std::exception& error) {
        log_->line(std::string("the voice fails: ") + error.what());
    }
}

}  // namespace vaultpad::secureworld
