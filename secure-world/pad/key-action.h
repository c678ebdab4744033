// What pressing a key does, told by its keysym.
#ifndef VAULTPAD_SECURE_WORLD_PAD_KEY_ACTION_H
#define VAULTPAD_SECURE_WORLD_PAD_KEY_ACTION_H

#include <string>

#include "pad/image-id.h"

namespace vaultpad::secureworld {

struct KeyAction {
    enum class Kind { Nothing, Type, TakeBack, Clear, Complete, Cancel, ShowPage };

    Kind kind = Kind::Nothing;
    char16_t character = 0;  // Type: what is typed
    std::string page;        // ShowPage: what is shown
};

// id is a key's. digitsOnly: the pad types nothing but 0 to 9.
KeyAction actionOf(const ImageId& id, bool digitsOnly);

}  // namespace vaultpad::secureworld

#endif
