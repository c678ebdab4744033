#include "check/rules.h"

namespace vaultpad::tools {

namespace {

// What the layout writes: the translation is told by the language.
std::string wordOf(const xmlNode& item, const LayoutSource& source) {
    for (const xmlNode* string : source.strings) {
        if (textOf(*string, "id") == textOf(item, "ref")) {
            return textOf(*string, "value");
        }
    }
    return {};
}

void checkText(const DrawnText& text, const CheckedObject& object, const std::string& about, int minFont,
               const xmlNode& item, Findings* findings) {
    const int smallest = minFont > 0 ? minFont : text.statedSize;
    const secureworld::Rect whole = {0, 0, object.image->place.width, object.image->place.height};
    if (text.drawnSize < smallest) {
        findings->add(
            lineOf(item), "fit",
            about + " is drawn with size " + std::to_string(text.drawnSize) + " instead of " + std::to_string(smallest),
            "shorten it or widen '" + object.image->id + "'");
    } else if (!secureworld::contains(whole, text.box)) {
        findings->add(lineOf(item), "fit", about + " reaches beyond '" + object.image->id + "'",
                      "place it within its image or make its font smaller");
    }
}

}  // namespace

void checkLabels(const std::vector<CheckedObject>& objects, const std::string& language, int minFont,
                 const LayoutSource& source, Findings* findings) {
    for (const CheckedObject& object : objects) {
        const std::vector<const xmlNode*> tree = wholeTree(*object.source);
        for (const DrawnText& text : object.image->texts) {
            const xmlNode& item = *tree[text.position];
            const std::string about = "\"" + wordOf(item, source) + "\" (" + language + ")";
            checkText(text, object, about, minFont, item, findings);
        }
    }
}

}  // namespace vaultpad::tools
