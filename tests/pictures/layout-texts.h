/* The texts of the staged layouts, drawn by the library's renderer. */
#ifndef VAULTPAD_PICTURES_LAYOUT_TEXTS_H
#define VAULTPAD_PICTURES_LAYOUT_TEXTS_H

#include <string>
#include <vector>

#include "picture-comparison.h"

namespace vaultpad::test {

/* Which of the layout files, as the parser is asked for it. */
struct LayoutChoice {
    int focusZoom;
    int highContrast;
    int type;
    int reverse;
    int orientation;
};

std::vector<LayoutChoice> allLayouts();

/* A text as the renderer drew it on its parent. Sizes of type and places are in pixels. */
struct DrawnText {
    std::string layout; /* the file's name */
    std::string object; /* the parent's id */
    std::string text;
    std::string role; /* what the font is for: character, word or title */
    std::string family;
    int wantedSize;
    int size;
    int left;
    int width;
    int parentWidth;
    Picture image; /* what travels to the trusted application */
};

enum class Texts { Translated, All };

/* Draws the texts of a layout in the process's locale; fails the test when the renderer reports an error. */
std::vector<DrawnText> drawTexts(const LayoutChoice& choice, Texts texts);

/* Draws a text in a colour that shows, alone, in the process's locale. */
Picture drawAlone(const std::string& text, const std::string& family);

}  // namespace vaultpad::test

#endif
