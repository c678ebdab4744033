/* One element of a layout or voice file. */
#ifndef VAULTPAD_SOURCE_CONTEXT_ELEMENT_H
#define VAULTPAD_SOURCE_CONTEXT_ELEMENT_H

#include <list>
#include <memory>
#include <string>
#include <unordered_map>

namespace vaultpad::context {

/*
 * Parents hold their children strongly, children their parent weakly: dropping the root frees the tree. Not to be used
 * by two threads at once, reading included, because reading an absent attribute inserts it.
 */
class Element {
public:
    using List = std::list<std::shared_ptr<Element>>;

    explicit Element(std::string name);

    const std::string& name() const { return name_; }

    std::weak_ptr<Element> parent() const { return parent_; }
    void parent(std::weak_ptr<Element> parent);

    /* The live list: appending through it changes the element. Never empty. */
    std::shared_ptr<List> children() const { return children_; }

    /* Appends at the end; the child's parent is the caller's to set. */
    void addChild(std::shared_ptr<Element> child);

    /* Returns the value; an absent attribute is inserted with an empty value, which is intended. */
    std::string attribute(std::string name);

    /* Inserts or replaces. */
    void attribute(std::string name, std::string value);

private:
    std::weak_ptr<Element> parent_;
    std::shared_ptr<List> children_;
    std::unordered_map<std::string, std::string> attributes_;
    std::string name_;

public:
    /* Set by the renderer once the element has been delivered. */
    bool mark = false;
};

}  // namespace vaultpad::context

#endif
