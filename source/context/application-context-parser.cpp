#include "context/application-context-parser.h"

#include <libxml++/libxml++.h>
#include <vaultpad-platform/tzplatform-config.h>

#include <utility>

#include "exception.h"
#include "log.h"

namespace vaultpad::context {

namespace {

constexpr int kPinpad = 1;
constexpr int kKeyboard = 2;

std::string absolutePath(const std::string& relative) {
    const char* path = tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, relative.c_str());
    return path != nullptr ? path : "";
}

// Bit 2 of the code tells the two portrait directions apart and is of no interest here.
bool isVertical(int orientation) {
    return (orientation & ~2) == 1;
}

// Any pair but the three named ones means both: a focus zoom of 2 alone selects "-eh", which is intended.
std::string accessibilitySuffix(int focusZoom, int highContrast) {
    if (focusZoom == 0 && highContrast == 0) {
        return "";
    }
    if (focusZoom == 1 && highContrast == 0) {
        return "-e";
    }
    if (focusZoom == 0 && highContrast == 1) {
        return "-h";
    }
    return "-eh";
}

std::string layoutFile(bool vertical, bool reverse, bool keyboard, const std::string& suffix) {
    std::string directory = vertical ? "vertical_" : "";
    directory += reverse ? "reverse/" : "normal/";
    std::string stem = vertical ? "vertical-" : "";
    stem += reverse ? "reverse-" : "";
    stem += keyboard ? "keyboard" : "pinpad";
    return "vaultpad/res/xml/" + directory + stem + suffix + ".xml";
}

// Parses the file, hands the root element's tree to the collector, and turns the XML library's exceptions into ours.
template <typename Collect>
std::shared_ptr<ElementContainer> parseFile(ApplicationContextParser& parser, const std::string& path,
                                            Collect&& collect) {
    std::shared_ptr<ElementContainer> container(new ElementContainer);
    try {
        xmlpp::DomParser dom;
        dom.parse_file(path);
        const std::shared_ptr<Element> root = parser.traverse(*dom.get_document()->get_root_node());
        if (root) {
            for (const auto& child : *root->children()) {
                collect(*container, *child);
            }
        }
    } catch (const xmlpp::exception& error) {
        throw exception::Exception(error.what());
    }
    return container;
}

void collectLayoutSection(ElementContainer& container, Element& section) {
    if (section.name() == "fonts") {
        container.fonts(section.children());
    } else if (section.name() == "images") {
        container.images(section.children());
        container.imageBaseDirectory(section.attribute("basedir"));
    } else if (section.name() == "objects") {
        container.objects(section.children());
    } else if (section.name() == "strings") {
        container.strings(section.children());
    }
}

void collectVoiceSection(ElementContainer& container, Element& section) {
    if (section.name() == "voices") {
        container.setVoices(section.children());
    }
}

}  // namespace

int ApplicationContextParser::setMode(int focusZoom, int highContrast, int type, int reverse, int orientation) {
    if (type != kKeyboard && type != kPinpad) {
        CA_LOG_ERROR(" wrong ime type");
        return 0;
    }
    if (reverse != 0 && reverse != 1) {
        CA_LOG_ERROR(" wrong reverse type");
        return 0;
    }
    path_ = absolutePath(layoutFile(isVertical(orientation), reverse == 1, type == kKeyboard,
                                    accessibilitySuffix(focusZoom, highContrast)));
    return 0;
}

std::shared_ptr<ElementContainer> ApplicationContextParser::parse() {
    return parseFile(*this, path_, collectLayoutSection);
}

std::shared_ptr<ElementContainer> ApplicationContextParser::parseAudio(int type) {
    const char* file = type == kKeyboard ? "keyboard-audio.xml" : "pinpad-audio.xml";
    return parseFile(*this, absolutePath(std::string("vaultpad/res/xml/audio/") + file), collectVoiceSection);
}

std::shared_ptr<Element> ApplicationContextParser::traverse(const xmlpp::Node& node) {
    const std::string name = node.get_name();
    // The filter compares names, so an element that is called "text" or "comment" is dropped too: intended.
    if (name == "text" || name == "comment") {
        return {};
    }
    auto element = std::make_shared<Element>(name);
    // Below a reference stands the entity's declaration, and from there all others: not part of the document.
    if (dynamic_cast<const xmlpp::EntityReference*>(&node) != nullptr) {
        return element;
    }
    for (const auto* childNode : node.get_children()) {
        std::shared_ptr<Element> child = traverse(*childNode);
        if (child) {
            child->parent(element);
            element->addChild(std::move(child));
        }
    }
    if (const auto* xmlElement = dynamic_cast<const xmlpp::Element*>(&node)) {
        for (const auto* attribute : xmlElement->get_attributes()) {
            element->attribute(attribute->get_name(), attribute->get_value());
        }
    }
    return element;
}

}  // namespace vaultpad::context
