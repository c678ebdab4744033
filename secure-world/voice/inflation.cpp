#include "voice/inflation.h"

#include <zlib.h>

#include <new>
#include <string>

#include "session/refusal.h"

namespace vaultpad::secureworld {

std::vector<std::uint8_t> inflated(const RequestBytes& compressed, std::size_t size) {
    // One byte more than is to come: a stream that holds more than it should is found out by it.
    std::vector<std::uint8_t> result(size + 1);
    uLongf produced = result.size();
    uLong consumed = compressed.size;
    const int status = uncompress2(result.data(), &produced, compressed.begin(), &consumed);
    if (status == Z_MEM_ERROR) {
        throw std::bad_alloc();
    }
    if (status == Z_BUF_ERROR || produced > size) {
        throw Refusal("a clip inflates to more than its " + std::to_string(size) + " bytes");
    }
    if (status != Z_OK) {
        throw Refusal("a clip is no whole zlib stream");
    }
    if (produced != size) {
        throw Refusal("a clip inflates to " + std::to_string(produced) + " bytes instead of " + std::to_string(size));
    }
    if (consumed != compressed.size) {
        throw Refusal(std::to_string(compressed.size - consumed) + " bytes follow a clip's zlib stream");
    }
    result.resize(size);
    return result;
}

}  // namespace vaultpad::secureworld
