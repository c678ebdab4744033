#include "session/text.h"

#include <cstddef>

namespace vaultpad::secureworld {

namespace {

constexpr std::size_t kLongest = 80;

}  // namespace

std::string escaped(std::string_view text) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f && c != '\\') {
            result += c;
        } else {
            result += "\\x";
            result += kDigits[byte >> 4];
            result += kDigits[byte & 0xf];
        }
    }
    return result;
}

std::string printable(std::string_view text) {
    return '"' + escaped(text.substr(0, kLongest)) + (text.size() > kLongest ? "...\"" : "\"");
}

}  // namespace vaultpad::secureworld
