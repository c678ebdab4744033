#include <algorithm>
#include <set>

#include "check/rules.h"

namespace vaultpad::tools {

namespace {

using secureworld::ImageId;
using secureworld::ImageKind;

constexpr const char* kStartPage = "main";

struct NamedObject {
    ImageId id;
    const xmlNode* source;
};

void checkPlaceWritten(const xmlNode& object, Findings* findings) {
    for (const char* name : {"x", "y"}) {
        if (textOf(object, name).empty()) {
            findings->add(lineOf(object), "place", "'" + textOf(object, "id") + "' has no \"" + name + "\"",
                          "say where in the pad it is, or it is never shown");
        }
    }
    for (const char* name : {"top", "left"}) {
        if (!textOf(object, name).empty()) {
            findings->add(lineOf(object), "origin",
                          "'" + textOf(object, "id") + "' has \"" + name + "\", so its picture is cut off",
                          "place it with \"x\" and \"y\"");
        }
    }
}

std::vector<NamedObject> namedObjects(const LayoutSource& source, Findings* findings) {
    std::vector<NamedObject> objects;
    for (const xmlNode* object : source.objects) {
        const std::string text = textOf(*object, "id");
        const auto id = secureworld::parseImageId(text);
        if (id) {
            objects.push_back({*id, object});
        } else {
            findings->add(lineOf(*object), "id", "'" + text + "' says nothing to the trusted application",
                          "name it background, input, mask, label.NAME or key.KEYSYM.normal|focus");
        }
    }
    return objects;
}

void checkTwins(const std::vector<NamedObject>& objects, Findings* findings) {
    for (const NamedObject& object : objects) {
        const bool lonely = std::none_of(objects.begin(), objects.end(),
                                         [&](const NamedObject& other) { return areTwins(object.id, other.id); });
        if (object.id.kind == ImageKind::Key && lonely) {
            findings->add(lineOf(*object.source), "twin",
                          "'" + textOf(*object.source, "id") + "' has no " +
                              (object.id.focused ? "normal" : "focused") + " twin, so it is not drawn",
                          "add the same key with the other state");
        }
    }
}

void checkPages(const std::vector<NamedObject>& objects, Findings* findings) {
    std::set<std::string> pages;
    for (const NamedObject& object : objects) {
        pages.insert(object.id.page);
    }
    pages.erase("");
    if (!pages.empty() && pages.count(kStartPage) == 0) {
        const auto first = std::find_if(objects.begin(), objects.end(),
                                        [](const NamedObject& object) { return !object.id.page.empty(); });
        findings->add(lineOf(*first->source), "page", "there are pages, but none called \"main\" to open on",
                      "call one of them main");
    }
    for (const NamedObject& object : objects) {
        if (!object.id.targetPage.empty() && pages.count(object.id.targetPage) == 0) {
            findings->add(lineOf(*object.source), "page", "nothing is on the page '" + object.id.targetPage + "'",
                          "name a page that the layout has");
        }
    }
}

}  // namespace

void checkObjects(const LayoutSource& source, Findings* findings) {
    for (const xmlNode* object : source.objects) {
        checkPlaceWritten(*object, findings);
    }
    const std::vector<NamedObject> objects = namedObjects(source, findings);
    checkTwins(objects, findings);
    checkPages(objects, findings);
}

}  // namespace vaultpad::tools
