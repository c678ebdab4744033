// One entry on a pad: which page is shown, which key has the focus, what has been typed.
#ifndef VAULTPAD_SECURE_WORLD_PAD_PAD_ENTRY_H
#define VAULTPAD_SECURE_WORLD_PAD_PAD_ENTRY_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pad/focus.h"
#include "pad/pad.h"
#include "pad/typed-text.h"

namespace vaultpad::secureworld {

class PadEntry {
public:
    enum class Effect { Nothing, Changed, Completed, Cancelled };

    // pad must outlive the entry. completeAt: number of characters that complete the entry, 0 for none.
    PadEntry(const Pad& pad, std::size_t completeAt);

    // Starts anew: opening page and focus, no text.
    void restart();

    // Whether pressing Return now would complete the entry. Arrows never do.
    bool returnCompletes() const;

    // Presses one of the keys of VaultPadTaKeyCode. After Completed the text is still there: the caller fetches it and
    // wipes it. After Cancelled it is gone.
    Effect press(std::uint32_t keyCode);

    TypedText& text() { return text_; }
    // An index into the pad's keys, or Pad::kNoKey.
    std::size_t focusedKey() const { return focusedKey_; }
    std::vector<Drawing> drawings() const { return pad_.drawings(page_, focusedKey_, text_.size()); }

private:
    const KeyAction* focusedAction() const;
    bool typingCompletes() const;
    Effect move(Direction direction);
    Effect act();
    Effect type(char16_t character);
    Effect showPage(const std::string& page);
    void focusNearest(const Rect& place);
    std::vector<Rect> places(const std::vector<std::size_t>& keys) const;

    const Pad& pad_;
    std::size_t completeAt_;
    std::string page_;
    std::size_t focusedKey_ = Pad::kNoKey;
    TypedText text_;
};

}  // namespace vaultpad::secureworld

#endif
