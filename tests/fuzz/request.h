/* Requests to the emulated TA. */
#ifndef VAULTPAD_TESTS_FUZZ_REQUEST_H
#define VAULTPAD_TESTS_FUZZ_REQUEST_H

#include <algorithm>
#include <memory>
#include <vector>

#include "session/requests.h"

namespace vaultpad::fuzz {

/* Exactly as long as the bytes, so that a read beyond them is seen. */
inline secureworld::RequestBytes requestOf(const std::vector<std::uint8_t>& bytes) {
    const std::shared_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return {copy, bytes.size()};
}

}  // namespace vaultpad::fuzz

#endif
