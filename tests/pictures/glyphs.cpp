#include "glyphs.h"

#include <Eina.h>

#include <set>

#include "layout-texts.h"

namespace vaultpad::test {

namespace {

// The toolkit draws U+FFFD, or what the font has in its place, for every character that no font has.
constexpr const char* kReplacement = "\xEF\xBF\xBD";

std::set<std::string> charactersOf(const std::string& text) {
    std::set<std::string> characters;
    int next = 0;
    while (static_cast<std::size_t>(next) < text.size()) {
        const auto begin = static_cast<std::size_t>(next);
        eina_unicode_utf8_next_get(text.c_str(), &next);
        characters.insert(text.substr(begin, static_cast<std::size_t>(next) - begin));
    }
    return characters;
}

// A mark has no width of its own and would be drawn outside its text: it gets a letter to stand on.
constexpr const char* kLetter = "x";

}  // namespace

std::vector<std::string> missingCharacters(const std::string& text, const std::string& family) {
    const Picture replacement = drawAlone(std::string(kLetter) + kReplacement, family);
    const Picture nothing = drawAlone(kLetter, family);
    std::vector<std::string> missing;
    for (const std::string& character : charactersOf(text)) {
        const Picture picture = drawAlone(kLetter + character, family);
        if (character != " " && (picture.pixels == nothing.pixels || picture.pixels == replacement.pixels)) {
            missing.push_back(character);
        }
    }
    return missing;
}

}  // namespace vaultpad::test
