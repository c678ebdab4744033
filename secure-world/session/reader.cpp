#include "session/reader.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "session/refusal.h"

namespace vaultpad::secureworld {

const std::uint8_t* Reader::take(const char* what, std::size_t size) {
    if (size > remaining()) {
        throw Refusal(std::string(what) + " takes " + std::to_string(size) + " bytes, the block holds " +
                      std::to_string(remaining()) + " more");
    }
    const std::uint8_t* place = bytes_.begin() + position_;
    position_ += size;
    return place;
}

std::uint32_t Reader::word(const char* what) {
    const std::uint8_t* bytes = take(what, sizeof(std::uint32_t));
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

std::int32_t Reader::number(const char* what) {
    const std::uint32_t value = word(what);
    std::int32_t result = 0;
    std::memcpy(&result, &value, sizeof(result));
    return result;
}

std::string_view Reader::string(const char* what, std::size_t longest) {
    const auto* start = reinterpret_cast<const char*>(bytes_.begin() + position_);
    const std::size_t window = std::min(remaining(), longest + 1);
    const std::size_t length = strnlen(start, window);
    if (length == window) {
        throw Refusal(std::string(what) + " has no end within " + std::to_string(window) + " bytes");
    }
    take(what, length + 1);
    return {start, length};
}

RequestBytes Reader::blob(const char* what, std::size_t size) {
    const std::uint8_t* place = take(what, size);
    return {std::shared_ptr<const std::uint8_t[]>(bytes_.data, place), size};
}

void Reader::end() const {
    if (remaining() != 0) {
        throw Refusal(std::to_string(remaining()) + " bytes follow the last value");
    }
}

}  // namespace vaultpad::secureworld
