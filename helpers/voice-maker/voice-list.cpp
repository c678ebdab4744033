#include "voice-maker/voice-list.h"

#include <libxml++/libxml++.h>

#include <stdexcept>

#include "voice-message.h"

namespace vaultpad::helpers {

namespace {

std::string attribute(const xmlpp::Node& node, const char* name) {
    const auto* element = dynamic_cast<const xmlpp::Element*>(&node);
    return element != nullptr ? element->get_attribute_value(name).raw() : std::string();
}

// Whatever the library keeps as an item counts, also a node that is no element: its clip is empty.
bool isItem(const xmlpp::Node& node) {
    return node.get_name() != "text" && node.get_name() != "comment";
}

}  // namespace

std::vector<VoiceItem> readVoices(const std::string& path) {
    audio::VoiceCollection<VoiceItem> voices;
    try {
        xmlpp::DomParser parser;
        parser.parse_file(path);
        for (const xmlpp::Node* section : parser.get_document()->get_root_node()->get_children("voices")) {
            if (dynamic_cast<const xmlpp::Element*>(section) == nullptr) {
                continue;
            }
            for (const xmlpp::Node* node : section->get_children()) {
                if (isItem(*node)) {
                    const std::string id = attribute(*node, "id");
                    voices[id] = {id, attribute(*node, "text"), attribute(*node, "i18n") == "true",
                                  attribute(*node, "letter")};
                }
            }
        }
    } catch (const std::exception& error) {
        throw std::runtime_error(path + ": " + error.what());
    }
    std::vector<VoiceItem> items;
    for (const auto& [id, item] : voices) {
        items.push_back(item);
    }
    return items;
}

}  // namespace vaultpad::helpers
