#include "wipe.h"

#include <cstring>

namespace vaultpad {

void wipe(void* data, std::size_t size) noexcept {
    if (size != 0) {
        explicit_bzero(data, size);
    }
}

}  // namespace vaultpad
