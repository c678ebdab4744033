/* Chooses and reads the layout and voice files. */
#ifndef VAULTPAD_SOURCE_CONTEXT_APPLICATION_CONTEXT_PARSER_H
#define VAULTPAD_SOURCE_CONTEXT_APPLICATION_CONTEXT_PARSER_H

#include <memory>
#include <string>

#include "context/element-container.h"
#include "context/element.h"

namespace xmlpp {
class Node;
}

namespace vaultpad::context {

class ApplicationContextParser {
public:
    /*
     * Selects the layout file for parse().
     * focusZoom, highContrast: 0 or 1; any other pair of values selects the file that has both.
     * type: 1 PIN pad, 2 keyboard. reverse: 0 or 1. orientation: 1 and 3 are vertical, all else horizontal.
     * Returns 0 always; a wrong type or reverse flag is logged and leaves the selection as it was.
     */
    int setMode(int focusZoom, int highContrast, int type, int reverse, int orientation);

    /* Reads the selected layout file. Throws exception::Exception with the XML library's message. */
    std::shared_ptr<ElementContainer> parse();

    /* Reads the voice file: the keyboard's for type 2, the PIN pad's for every other type. Throws as parse() does. */
    std::shared_ptr<ElementContainer> parseAudio(int type);

    /* Builds the tree of one XML node; an empty pointer for text and comments. */
    std::shared_ptr<Element> traverse(const xmlpp::Node& node);

    /* The selected file's absolute path; empty before the first successful setMode(). */
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace vaultpad::context

#endif
