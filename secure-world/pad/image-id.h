// The ids of a layout's top-level objects: what an image is for.
#ifndef VAULTPAD_SECURE_WORLD_PAD_IMAGE_ID_H
#define VAULTPAD_SECURE_WORLD_PAD_IMAGE_ID_H

#include <optional>
#include <string>
#include <string_view>

namespace vaultpad::secureworld {

// In the order in which the kinds are drawn; the mask is drawn once per typed character, on top.
enum class ImageKind { Background, Input, Label, Key, Mask };

struct ImageId {
    std::string page;  // empty: on every page
    ImageKind kind = ImageKind::Label;
    std::string keysym;      // keys: an X keysym name
    std::string targetPage;  // keys: the page that the key shows, or empty
    bool focused = false;    // keys: the state
};

// Reads an id by the grammar of docs/layout-guide.md. Returns nothing for an id outside of it.
std::optional<ImageId> parseImageId(std::string_view id);

// The id of the voice clip for an image: a key's id without its state, any other id as it is.
std::string clipIdOf(const std::string& id);

}  // namespace vaultpad::secureworld

#endif
