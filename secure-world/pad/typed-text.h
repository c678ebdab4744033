// The text that has been typed.
#ifndef VAULTPAD_SECURE_WORLD_PAD_TYPED_TEXT_H
#define VAULTPAD_SECURE_WORLD_PAD_TYPED_TEXT_H

#include <cstddef>
#include <cstdint>

#include "pad/locked-page.h"

namespace vaultpad::secureworld {

// At most VAULTPAD_TA_TEXT_MAX characters in a locked page. There is no way to get at them but encode().
class TypedText {
public:
    // Bytes that one encoded character takes.
    static constexpr std::size_t kCharacterSize = 2;

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    bool full() const;

    // Adds a character; false when the text is full.
    bool append(char16_t character);

    // Takes the last character back; false when there is none.
    bool removeLast();

    void wipe();

    // Writes size() UTF-16LE characters, kCharacterSize bytes each, to memory that is locked as well.
    void encode(std::uint8_t* out) const;

private:
    LockedPage page_;
    std::size_t size_ = 0;
};

}  // namespace vaultpad::secureworld

#endif
