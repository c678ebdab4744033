// Undoes the compression that voice clips travel in.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_INFLATION_H
#define VAULTPAD_SECURE_WORLD_VOICE_INFLATION_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "session/request-bytes.h"

namespace vaultpad::secureworld {

// Inflates one zlib stream, which must take all of `compressed` and give exactly size bytes. Takes size bytes of memory
// and no more, whatever the stream holds. Throws Refusal.
std::vector<std::uint8_t> inflated(const RequestBytes& compressed, std::size_t size);

}  // namespace vaultpad::secureworld

#endif
