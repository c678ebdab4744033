/* Text for XML and HTML: used by the voice maker and by the layouts' gallery. */
#ifndef VAULTPAD_COMMON_MARKUP_H
#define VAULTPAD_COMMON_MARKUP_H

#include <string>

namespace vaultpad {

/* Returns text so that it is read as it is between tags, and as an attribute's value in double quotes. */
inline std::string escapedMarkup(const std::string& text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

}  // namespace vaultpad

#endif
