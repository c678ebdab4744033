#include "pad/key-action.h"

#include <xkbcommon/xkbcommon.h>

#include <cstdint>

namespace vaultpad::secureworld {

namespace {

bool isDigit(std::uint32_t character) {
    return character >= '0' && character <= '9';
}

// A text travels as one 16-bit unit per character, so only characters that are one unit can be typed.
bool isTypable(std::uint32_t character) {
    const bool control = character < 0x20 || (character >= 0x7f && character < 0xa0);
    const bool surrogate = character >= 0xd800 && character <= 0xdfff;
    return !control && !surrogate && character <= 0xffff;
}

}  // namespace

KeyAction actionOf(const ImageId& id, bool digitsOnly) {
    using Kind = KeyAction::Kind;
    if (!id.targetPage.empty()) {
        return {Kind::ShowPage, 0, id.targetPage};
    }
    const xkb_keysym_t keysym = xkb_keysym_from_name(id.keysym.c_str(), XKB_KEYSYM_NO_FLAGS);
    switch (keysym) {
        case XKB_KEY_BackSpace:
            return {Kind::TakeBack, 0, {}};
        case XKB_KEY_Clear:
            return {Kind::Clear, 0, {}};
        case XKB_KEY_Return:
            return {Kind::Complete, 0, {}};
        case XKB_KEY_Cancel:
        case XKB_KEY_Escape:
            return {Kind::Cancel, 0, {}};
        default:
            break;
    }
    const std::uint32_t character = xkb_keysym_to_utf32(keysym);
    if (!isTypable(character) || (digitsOnly && !isDigit(character))) {
        return {};
    }
    return {Kind::Type, static_cast<char16_t>(character), {}};
}

}  // namespace vaultpad::secureworld
