// The contents of each event's request, read and checked. Each function reads to the end and throws Refusal.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_REQUESTS_H
#define VAULTPAD_SECURE_WORLD_SESSION_REQUESTS_H

#include <cstdint>
#include <vector>

#include "session/image-store.h"
#include "session/public-key.h"
#include "session/request-bytes.h"
#include "voice/voice-clips.h"

namespace vaultpad::secureworld {

// Event 5.
struct PadType {
    std::uint32_t type = 0;        // a VaultPadTaImeType
    std::uint32_t completeAt = 0;  // number of digits that complete a PIN pad's input; 0: none do
    bool enlarged = false;
    bool rightToLeft = false;
    std::uint32_t orientation = 0;  // a VaultPadTaOrientation
    std::int32_t baseX = 0;         // the pad's origin on the secure display
    std::int32_t baseY = 0;
};

PadType readPadType(const RequestBytes& request);

// Event 8: refuses a description of another display than this one.
void checkRenderContext(const RequestBytes& request);

// Event 0, each image placed from the origin that the pad's type told.
std::vector<StoredImage> readImages(const RequestBytes& request, const PadType& type);

// Event 4, each clip inflated and found to be a sound that can be played, or empty.
std::vector<VoiceClip> readVoiceClips(const RequestBytes& request);

// Event 3.
PublicKey readPublicKey(const RequestBytes& request);

// Event 2: returns the key code, one of VaultPadTaKeyCode.
std::uint32_t readKey(const RequestBytes& request);

// Events that carry nothing.
void checkEmpty(const RequestBytes& request);

}  // namespace vaultpad::secureworld

#endif
