#include "layout-builder.h"

namespace vaultpad::test {

ElementPointer makeElement(const std::string& name, const Attributes& attributes,
                           const std::vector<ElementPointer>& children) {
    auto element = std::make_shared<context::Element>(name);
    for (const auto& [key, value] : attributes) {
        element->attribute(key, value);
    }
    for (const ElementPointer& child : children) {
        child->parent(element);
        element->addChild(child);
    }
    return element;
}

std::shared_ptr<context::Element::List> listOf(const std::vector<ElementPointer>& elements) {
    return std::make_shared<context::Element::List>(elements.begin(), elements.end());
}

LayoutBuilder& LayoutBuilder::font(const Attributes& attributes) {
    container_->fonts(listOf({makeElement("font", attributes)}));
    return *this;
}

LayoutBuilder& LayoutBuilder::image(const Attributes& attributes) {
    container_->images(listOf({makeElement("image", attributes)}));
    return *this;
}

LayoutBuilder& LayoutBuilder::string(const Attributes& attributes) {
    container_->strings(listOf({makeElement("string", attributes)}));
    return *this;
}

LayoutBuilder& LayoutBuilder::object(const Attributes& attributes, const std::vector<ElementPointer>& children) {
    container_->objects(listOf({makeElement("object", attributes, children)}));
    return *this;
}

LayoutBuilder& LayoutBuilder::imageBaseDirectory(const std::string& directory) {
    container_->imageBaseDirectory(directory);
    return *this;
}

}  // namespace vaultpad::test
