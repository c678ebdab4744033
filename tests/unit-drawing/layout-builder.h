/* Layouts made in memory. */
#ifndef VAULTPAD_UNIT_DRAWING_LAYOUT_BUILDER_H
#define VAULTPAD_UNIT_DRAWING_LAYOUT_BUILDER_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "context/element-container.h"
#include "context/element.h"

namespace vaultpad::test {

using ElementPointer = std::shared_ptr<context::Element>;
using Attributes = std::vector<std::pair<std::string, std::string>>;

ElementPointer makeElement(const std::string& name, const Attributes& attributes = {},
                           const std::vector<ElementPointer>& children = {});

/* A list as the container's filling operations take it. */
std::shared_ptr<context::Element::List> listOf(const std::vector<ElementPointer>& elements);

class LayoutBuilder {
public:
    LayoutBuilder() : container_(new context::ElementContainer) {}

    /* Each adds one item; the attributes include its "id". */
    LayoutBuilder& font(const Attributes& attributes);
    LayoutBuilder& image(const Attributes& attributes);
    LayoutBuilder& string(const Attributes& attributes);
    LayoutBuilder& object(const Attributes& attributes, const std::vector<ElementPointer>& children = {});
    LayoutBuilder& imageBaseDirectory(const std::string& directory);

    std::shared_ptr<context::ElementContainer> container() const { return container_; }

private:
    std::shared_ptr<context::ElementContainer> container_;
};

}  // namespace vaultpad::test

#endif
