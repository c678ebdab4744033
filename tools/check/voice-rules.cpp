#include <set>

#include "check/rules.h"

namespace vaultpad::tools {

void checkVoices(const LayoutSource& voices, const LayoutSource& layout, Findings* findings) {
    std::set<std::string> spoken;
    for (const xmlNode* object : layout.objects) {
        const std::string id = textOf(*object, "id");
        const auto parsed = secureworld::parseImageId(id);
        if (parsed && parsed->kind == secureworld::ImageKind::Key) {
            // A key is spoken of by its id with or without the state.
            spoken.insert(id);
            spoken.insert(id.substr(0, id.rfind('.')));
        } else if (parsed && parsed->kind == secureworld::ImageKind::Label) {
            spoken.insert(id);
        }
    }
    checkUnique(voices.voices, findings);
    for (const xmlNode* voice : voices.voices) {
        const std::string id = textOf(*voice, "id");
        if (id.empty()) {
            findings->add(lineOf(*voice), "missing-id", "a voice without an id",
                          "name the key or label that it speaks for");
        } else if (spoken.count(id) == 0) {
            findings->add(lineOf(*voice), "unknown-key", "the layout has no key or label '" + id + "'",
                          "name one of the layout's keys, key.KEYSYM, or labels, label.NAME");
        }
    }
}

}  // namespace vaultpad::tools
