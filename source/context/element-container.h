/* The items of one layout or voice file, by id. */
#ifndef VAULTPAD_SOURCE_CONTEXT_ELEMENT_CONTAINER_H
#define VAULTPAD_SOURCE_CONTEXT_ELEMENT_CONTAINER_H

#include <memory>
#include <string>
#include <unordered_map>

#include "context/element.h"

namespace vaultpad::context {

/*
 * Five collections, all alike. Filling adds to a collection: of several elements with one id the last stays, and an
 * element without an id is kept under the empty string. A whole-map getter returns the live map. A lookup of an absent
 * id returns an empty pointer and leaves an entry (id, empty pointer) in the map, which is intended: walks over a whole
 * map meet such entries. Not to be used by two threads at once, lookups included.
 */
class ElementContainer {
public:
    using List = Element::List;
    using Map = std::unordered_map<std::string, std::shared_ptr<Element>>;

    ElementContainer();

    std::string imageBaseDirectory() const { return imageBaseDirectory_; }
    void imageBaseDirectory(std::string directory);

    void fonts(std::shared_ptr<List> list);
    std::shared_ptr<Map> fonts() const { return fonts_; }
    std::shared_ptr<Element> font(std::string id) const;

    void images(std::shared_ptr<List> list);
    std::shared_ptr<Map> images() const { return images_; }
    std::shared_ptr<Element> image(std::string id) const;

    void strings(std::shared_ptr<List> list);
    std::shared_ptr<Map> strings() const { return strings_; }
    std::shared_ptr<Element> string(std::string id) const;

    void objects(std::shared_ptr<List> list);
    std::shared_ptr<Map> objects() const { return objects_; }
    std::shared_ptr<Element> object(std::string id) const;

    void setVoices(std::shared_ptr<List> list);
    std::shared_ptr<Map> getVoices() const { return voices_; }
    std::shared_ptr<Element> getVoice(std::string id) const;

private:
    std::string imageBaseDirectory_;
    std::shared_ptr<Map> fonts_;
    std::shared_ptr<Map> images_;
    std::shared_ptr<Map> strings_;
    std::shared_ptr<Map> objects_;
    std::shared_ptr<Map> voices_;
};

}  // namespace vaultpad::context

#endif
