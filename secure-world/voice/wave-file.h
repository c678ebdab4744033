// The one format of sound that clips have: RIFF/WAVE with a header of 44 bytes, PCM, mono, 16 bit, 22050 Hz.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_WAVE_FILE_H
#define VAULTPAD_SECURE_WORLD_VOICE_WAVE_FILE_H

#include <string>
#include <vector>

#include "voice/voice-clips.h"

namespace vaultpad::secureworld {

// Throws Refusal when the sound is neither a whole file of this format nor empty.
void checkWaveFile(const Sound& sound);

// One file that holds the sounds of all clips one after the other. The clips' sounds are files of this format.
Sound joinedWaveFile(const std::vector<VoiceClip>& clips);

}  // namespace vaultpad::secureworld

#endif
