#include "voice-decision-double.h"

#include "audio/voice-guide.h"

int vaultpad::audio::VoiceGuide::getVoiceEnableStatus() {
    return test::voiceDecision;
}
