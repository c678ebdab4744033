#include "log-line.h"

#include <vaultpad-platform/dlog.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace vaultpad::test {

namespace {

constexpr std::string_view kEntryTag = "VPAD";
constexpr std::string_view kControllerTag = "VAULTPAD_CA";
constexpr std::string_view kInfoColour = "\033[01;32;40m";
constexpr std::string_view kErrorColour = "\033[01;31;40m";
constexpr std::string_view kColourEnd = "\033[0m";

struct Parts {
    std::string file;
    std::string function;
    int line = 0;
    std::string rest;
};

Parts split(const std::string& text) {
    const std::size_t colon = text.find(": ");
    const std::size_t close = text.find(") > ", colon);
    if (colon == std::string::npos || close == std::string::npos) {
        return {};
    }
    const std::size_t open = text.rfind('(', close);
    if (open == std::string::npos || open < colon + 2) {
        return {};
    }
    return {text.substr(0, colon), text.substr(colon + 2, open - colon - 2),
            std::atoi(text.substr(open + 1, close - open - 1).c_str()), text.substr(close + 4)};
}

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

bool endsWith(std::string_view text, std::string_view suffix) {
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

bool isBaseName(const std::string& file) {
    return file.find('/') == std::string::npos && (endsWith(file, ".cpp") || endsWith(file, ".c"));
}

// A destructor and the callback without a name of its own have a sign that other functions' names have not.
bool isFunctionName(const std::string& name) {
    const auto isSign = [](char character) {
        return std::isalnum(static_cast<unsigned char>(character)) == 0 && character != '_';
    };
    const std::size_t start = name.compare(0, 1, "~") == 0 ? 1 : 0;
    return name == "operator()" ||
           (name.size() > start && std::none_of(name.begin() + static_cast<std::ptrdiff_t>(start), name.end(), isSign));
}

}  // namespace

std::string LogLine::file() const {
    return split(text).file;
}

std::string LogLine::function() const {
    return split(text).function;
}

int LogLine::line() const {
    return split(text).line;
}

std::string LogLine::message() const {
    std::string rest = split(text).rest;
    if ((startsWith(rest, kInfoColour) || startsWith(rest, kErrorColour)) && endsWith(rest, kColourEnd)) {
        rest = rest.substr(kInfoColour.size(), rest.size() - kInfoColour.size() - kColourEnd.size());
    }
    return rest;
}

std::string faultOf(const LogLine& line) {
    const Parts parts = split(line.text);
    if (line.logId != VAULTPAD_DLOG_MAIN) {
        return "another log than the main one";
    }
    if (line.priority != VAULTPAD_DLOG_INFO && line.priority != VAULTPAD_DLOG_ERROR) {
        return "an unknown priority";
    }
    if (!isBaseName(parts.file)) {
        return "no base name of a source file";
    }
    if (!isFunctionName(parts.function)) {
        return "no function name";
    }
    if (parts.line <= 0) {
        return "no line number";
    }
    if (line.tag == kEntryTag) {
        return parts.rest.find('\033') == std::string::npos ? "" : "a colour in a plain line";
    }
    if (line.tag != kControllerTag) {
        return "an unknown tag";
    }
    const std::string_view colour = line.priority == VAULTPAD_DLOG_ERROR ? kErrorColour : kInfoColour;
    return startsWith(parts.rest, colour) && endsWith(parts.rest, kColourEnd) ? "" : "no colours for its priority";
}

}  // namespace vaultpad::test
