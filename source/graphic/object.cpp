#include "graphic/object.h"

#include <sstream>

namespace vaultpad::graphic {

// x and y stay unset on purpose: an object has no place until the renderer has read one.
Object::Object() : children_(std::make_shared<List>()) {}

std::string Object::toString() const {
    std::ostringstream text;
    text << "id: " << id_ << ", top: " << top_ << ", left: " << left_ << ", width: " << width_
         << ", height: " << height_;
    return text.str();
}

}  // namespace vaultpad::graphic
