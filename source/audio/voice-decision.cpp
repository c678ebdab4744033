#include "audio/voice-guide.h"

namespace vaultpad::audio {

// The guide ships switched off; this is the single place that decides.
int VoiceGuide::getVoiceEnableStatus() {
    return 0;
}

}  // namespace vaultpad::audio
