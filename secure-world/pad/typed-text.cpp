#include "pad/typed-text.h"

#include <string.h>

#include <algorithm>

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

bool TypedText::full() const {
    return size_ >= VAULTPAD_TA_TEXT_MAX;
}

bool TypedText::append(char16_t character) {
    if (full()) {
        return false;
    }
    std::uint8_t* place = page_.data() + size_ * kCharacterSize;
    place[0] = static_cast<std::uint8_t>(character & 0xff);
    place[1] = static_cast<std::uint8_t>(character >> 8);
    ++size_;
    return true;
}

bool TypedText::removeLast() {
    if (empty()) {
        return false;
    }
    --size_;
    std::uint8_t* place = page_.data() + size_ * kCharacterSize;
    explicit_bzero(place, kCharacterSize);
    return true;
}

void TypedText::wipe() {
    page_.wipe();
    size_ = 0;
}

void TypedText::encode(std::uint8_t* out) const {
    std::copy_n(page_.data(), size_ * kCharacterSize, out);
}

}  // namespace vaultpad::secureworld
