// Takes the place of voice-decision.cpp where the guide is to be heard; never part of the shipped library.
#include "audio/voice-guide.h"

namespace vaultpad::audio {

int VoiceGuide::getVoiceEnableStatus() {
    return 1;
}

}  // namespace vaultpad::audio
