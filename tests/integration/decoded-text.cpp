#include "decoded-text.h"

#include <vaultpad/vaultpad.h>

#include <algorithm>

namespace {

std::string utf8(char16_t character) {
    if (character < 0x80) {
        return {static_cast<char>(character)};
    }
    if (character < 0x800) {
        return {static_cast<char>(0xC0 | character >> 6), static_cast<char>(0x80 | (character & 0x3F))};
    }
    return {static_cast<char>(0xE0 | character >> 12), static_cast<char>(0x80 | (character >> 6 & 0x3F)),
            static_cast<char>(0x80 | (character & 0x3F))};
}

}  // namespace

std::string decodedText(const std::u16string& characters) {
    std::string text;
    for (std::size_t position = 0; position < characters.size(); ++position) {
        const std::string bytes = utf8(characters[position]);
        text.resize(std::max(text.size(), position + bytes.size()));
        text.replace(position, bytes.size(), bytes);
    }
    return text.substr(0, VAULTPAD_TEXT_LENGTH_MAX);
}
