#include "pad/image-id.h"

#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace vaultpad::secureworld {

namespace {

constexpr std::string_view kTargetPrefix = "to-";
constexpr std::array<std::string_view, 7> kReservedWords = {"background", "input",  "mask", "label",
                                                            "key",        "normal", "focus"};

// Plain ASCII, whatever the locale.
bool isLower(char c) {
    return c >= 'a' && c <= 'z';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isLetter(char c) {
    return isLower(c) || (c >= 'A' && c <= 'Z');
}

bool isPage(std::string_view word) {
    return !word.empty() && isLower(word.front()) &&
           std::all_of(word.begin(), word.end(), [](char c) { return isLower(c) || isDigit(c); }) &&
           std::find(kReservedWords.begin(), kReservedWords.end(), word) == kReservedWords.end();
}

bool isName(std::string_view word) {
    return !word.empty() && isLetter(word.front()) && std::all_of(word.begin(), word.end(), [](char c) {
        return isLetter(c) || isDigit(c) || c == '-' || c == '_';
    });
}

bool isKeysym(const std::string& word) {
    return xkb_keysym_from_name(word.c_str(), XKB_KEYSYM_NO_FLAGS) != XKB_KEY_NoSymbol;
}

std::vector<std::string_view> splitAtDots(std::string_view text) {
    std::vector<std::string_view> words;
    for (std::size_t dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.')) {
        words.push_back(text.substr(0, dot));
        text.remove_prefix(dot + 1);
    }
    words.push_back(text);
    return words;
}

// Reads the words after "key".
bool parseKey(const std::vector<std::string_view>& words, ImageId& result) {
    constexpr std::size_t kPlain = 2;   // keysym, state
    constexpr std::size_t kToPage = 3;  // keysym, to-PAGE, state
    if (words.size() != kPlain && words.size() != kToPage) {
        return false;
    }
    result.kind = ImageKind::Key;
    result.keysym = std::string(words.front());
    result.focused = words.back() == "focus";
    if (!isKeysym(result.keysym) || (!result.focused && words.back() != "normal")) {
        return false;
    }
    if (words.size() == kToPage) {
        std::string_view target = words[1];
        if (target.substr(0, kTargetPrefix.size()) != kTargetPrefix) {
            return false;
        }
        target.remove_prefix(kTargetPrefix.size());
        result.targetPage = std::string(target);
        return isPage(target);
    }
    return true;
}

}  // namespace

std::optional<ImageId> parseImageId(std::string_view id) {
    ImageId result;
    std::vector<std::string_view> words = splitAtDots(id);
    if (words.size() > 1 && isPage(words.front())) {
        result.page = std::string(words.front());
        words.erase(words.begin());
    }
    const std::string_view item = words.front();
    words.erase(words.begin());
    if (item == "key") {
        return parseKey(words, result) ? std::optional(result) : std::nullopt;
    }
    if (item == "label") {
        result.kind = ImageKind::Label;
        return words.size() == 1 && isName(words.front()) ? std::optional(result) : std::nullopt;
    }
    if (item == "background") {
        result.kind = ImageKind::Background;
    } else if (item == "input") {
        result.kind = ImageKind::Input;
    } else if (item == "mask") {
        result.kind = ImageKind::Mask;
    } else {
        return std::nullopt;
    }
    return words.empty() ? std::optional(result) : std::nullopt;
}

std::string clipIdOf(const std::string& id) {
    const std::optional<ImageId> image = parseImageId(id);
    return image && image->kind == ImageKind::Key ? id.substr(0, id.rfind('.')) : id;
}

}  // namespace vaultpad::secureworld
