#include <algorithm>
#include <charconv>
#include <optional>

#include "check/rules.h"

namespace vaultpad::tools {

namespace {

constexpr std::size_t kColourDigits = 6;

// The whole value or nothing, where the library itself would read "12px" as 12; and nothing so large that it cannot
// be meant.
std::optional<int> wholeNumber(const std::string& text) {
    int number = 0;
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool whole = result.ec == std::errc() && result.ptr == end;
    return whole && number >= -kFarthest && number <= kFarthest ? std::optional(number) : std::nullopt;
}

void checkNumber(const xmlNode& element, const char* name, Findings* findings) {
    const std::string value = textOf(element, name);
    if (!value.empty() && !wholeNumber(value)) {
        findings->add(lineOf(element), "number", std::string(name) + "=\"" + value + "\" is not a number",
                      "write a whole number of pixels, digits alone");
    }
}

void checkSize(const xmlNode& element, const char* name, Findings* findings) {
    const std::string value = textOf(element, name);
    const std::optional<int> number = wholeNumber(value);
    if (!number || *number < 1) {
        findings->add(lineOf(element), "number", std::string(name) + "=\"" + value + "\" is not a size",
                      "write a whole number of pixels above 0");
    }
}

void checkColour(const xmlNode& font, Findings* findings) {
    const std::string colour = textOf(font, "color");
    if (colour.size() != kColourDigits || colour.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        findings->add(lineOf(font), "colour", "\"" + colour + "\" is not a colour",
                      "write six hexadecimal digits, two each for red, green and blue");
    }
}

void checkObjectNumbers(const xmlNode& object, Findings* findings) {
    for (const char* name : {"top", "left", "margin", "x", "y"}) {
        checkNumber(object, name, findings);
    }
    if (textOf(object, "line-height") != "inherit") {
        checkNumber(object, "line-height", findings);
    }
}

}  // namespace

void checkValues(const LayoutSource& source, Findings* findings) {
    for (const xmlNode* font : source.fonts) {
        checkColour(*font, findings);
        checkSize(*font, "size", findings);
    }
    for (const xmlNode* image : source.images) {
        if (textOf(*image, "type") != "file") {
            checkSize(*image, "width", findings);
            checkSize(*image, "height", findings);
        }
    }
    for (const xmlNode* object : source.objects) {
        for (const xmlNode* item : wholeTree(*object)) {
            checkObjectNumbers(*item, findings);
        }
    }
}

}  // namespace vaultpad::tools
