#include "context/element.h"

#include <utility>

namespace vaultpad::context {

Element::Element(std::string name) : children_(std::make_shared<List>()), name_(std::move(name)) {}

void Element::parent(std::weak_ptr<Element> parent) {
    parent_ = std::move(parent);
}

void Element::addChild(std::shared_ptr<Element> child) {
    children_->push_back(std::move(child));
}

std::string Element::attribute(std::string name) {
    return attributes_[std::move(name)];
}

void Element::attribute(std::string name, std::string value) {
    attributes_[std::move(name)] = std::move(value);
}

}  // namespace vaultpad::context
