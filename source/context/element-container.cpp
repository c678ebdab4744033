#include "context/element-container.h"

#include <utility>

namespace vaultpad::context {

namespace {

void fill(ElementContainer::Map& map, const ElementContainer::List& list) {
    for (const auto& element : list) {
        map[element->attribute("id")] = element;
    }
}

}  // namespace

ElementContainer::ElementContainer()
    : fonts_(std::make_shared<Map>()),
      images_(std::make_shared<Map>()),
      strings_(std::make_shared<Map>()),
      objects_(std::make_shared<Map>()),
      voices_(std::make_shared<Map>()) {}

void ElementContainer::imageBaseDirectory(std::string directory) {
    imageBaseDirectory_ = std::move(directory);
}

void ElementContainer::fonts(std::shared_ptr<List> list) {
    fill(*fonts_, *list);
}
void ElementContainer::images(std::shared_ptr<List> list) {
    fill(*images_, *list);
}
void ElementContainer::strings(std::shared_ptr<List> list) {
    fill(*strings_, *list);
}
void ElementContainer::objects(std::shared_ptr<List> list) {
    fill(*objects_, *list);
}
void ElementContainer::setVoices(std::shared_ptr<List> list) {
    fill(*voices_, *list);
}

std::shared_ptr<Element> ElementContainer::font(std::string id) const {
    return (*fonts_)[std::move(id)];
}
std::shared_ptr<Element> ElementContainer::image(std::string id) const {
    return (*images_)[std::move(id)];
}
std::shared_ptr<Element> ElementContainer::string(std::string id) const {
    return (*strings_)[std::move(id)];
}
std::shared_ptr<Element> ElementContainer::object(std::string id) const {
    return (*objects_)[std::move(id)];
}
std::shared_ptr<Element> ElementContainer::getVoice(std::string id) const {
    return (*voices_)[std::move(id)];
}

}  // namespace vaultpad::context
