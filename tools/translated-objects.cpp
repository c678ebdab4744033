#include "translated-objects.h"

#include <algorithm>

namespace vaultpad::tools {

namespace {

bool hasTranslation(const context::ElementContainer& layout, context::Element& element) {
    const auto string = element.attribute("type") == "image" ? nullptr : layout.string(element.attribute("ref"));
    const auto& children = *element.children();
    return (string && string->attribute("i18n") == "true") ||
           std::any_of(children.begin(), children.end(),
                       [&](const auto& child) { return hasTranslation(layout, *child); });
}

}  // namespace

bool isTranslated(const context::ElementContainer& layout, const std::string& objectId) {
    const auto element = layout.object(objectId);
    return element && hasTranslation(layout, *element);
}

}  // namespace vaultpad::tools
