#include <set>

#include "check/rules.h"

namespace vaultpad::tools {

void checkVoices(const LayoutSource& voices, const LayoutSource& layout, Findings* findings) {
    std::set<std::string> keys;
    for (const xmlNode* object : layout.objects) {
        const std::string id = textOf(*object, "id");
        const auto parsed = secureworld::parseImageId(id);
        if (parsed && parsed->kind == secureworld::ImageKind::Key) {
            // A key is spoken of by its id with or without the state.
            keys.insert(id);
            keys.insert(id.substr(0, id.rfind('.')));
        }
    }
    checkUnique(voices.voices, findings);
    for (const xmlNode* voice : voices.voices) {
        const std::string id = textOf(*voice, "id");
        if (id.empty()) {
            findings->add(lineOf(*voice), "missing-id", "a voice without an id", "name the key that it speaks for");
        } else if (keys.count(id) == 0) {
            findings->add(lineOf(*voice), "unknown-key", "the layout has no key '" + id + "'",
                          "name one of the layout's keys, key.KEYSYM");
        }
    }
}

}  // namespace vaultpad::tools
