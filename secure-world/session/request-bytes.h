// What the client wrote into a request block, as this process's own copy.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_REQUEST_BYTES_H
#define VAULTPAD_SECURE_WORLD_SESSION_REQUEST_BYTES_H

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vaultpad::secureworld {

// Shared, so that images and clips stay where they arrived instead of being copied again.
struct RequestBytes {
    std::shared_ptr<const std::uint8_t[]> data;
    std::size_t size = 0;

    const std::uint8_t* begin() const { return data.get(); }
    const std::uint8_t* end() const { return data.get() + size; }
};

}  // namespace vaultpad::secureworld

#endif
