/* Whether the fonts of this host have what a text needs. */
#ifndef VAULTPAD_PICTURES_GLYPHS_H
#define VAULTPAD_PICTURES_GLYPHS_H

#include <string>
#include <vector>

namespace vaultpad::test {

/*
 * The characters of a UTF-8 text, each once, for which the renderer shows nothing or the sign that stands for a missing
 * glyph. What it shows for a character depends on the family and on the process's locale.
 */
std::vector<std::string> missingCharacters(const std::string& text, const std::string& family);

}  // namespace vaultpad::test

#endif
