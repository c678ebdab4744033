/* The form of a clip: one complete WAV file. */
#ifndef VAULTPAD_HELPERS_VOICE_MAKER_WAVE_FILE_H
#define VAULTPAD_HELPERS_VOICE_MAKER_WAVE_FILE_H

#include <cstdint>
#include <optional>
#include <vector>

namespace vaultpad::helpers {

using Bytes = std::vector<std::uint8_t>;

/*
 * Makes a clip of a WAV stream, whose sizes are placeholders: RIFF/WAVE, a format chunk of 16 bytes (PCM, one channel,
 * 16 bits, 22050 Hz), then the data. Nothing when the stream is not of that form; an empty clip when it has no sound.
 */
std::optional<Bytes> completeWave(Bytes stream);

}  // namespace vaultpad::helpers

#endif
