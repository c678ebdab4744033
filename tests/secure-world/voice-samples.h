// Voice clips for the TA, and the requests that bring them there.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_VOICE_SAMPLES_H
#define VAULTPAD_TESTS_SECURE_WORLD_VOICE_SAMPLES_H

#include <cstdint>
#include <string>
#include <vector>

#include "ta-client.h"

namespace vaultpad::secureworld {

// A whole WAV file of the agreed format whose samples all are `sample`.
Bytes waveFile(std::uint16_t sample, std::size_t samples = 20);

struct SampleClip {
    std::string id;
    Bytes sound;
};

// A clip for the title and for each of some keys of pinPad(), each with another sound; none for 6.
std::vector<SampleClip> pinPadClips();

// The sound of the clip with this id; fails the test when there is none.
Bytes soundOf(const std::vector<SampleClip>& clips, const std::string& id);

Bytes compressed(const Bytes& sound);

// At most 15 clips.
Bytes clipsRequest(const std::vector<SampleClip>& clips);

}  // namespace vaultpad::secureworld

#endif
