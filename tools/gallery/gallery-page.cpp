#include "gallery/gallery-page.h"

#include <common/markup.h>

#include <map>
#include <sstream>

namespace vaultpad::tools {

namespace {

// What the pictures can be filtered by: attribute, legend, and value with its label for each choice.
struct Filter {
    const char* name;
    const char* legend;
    std::vector<std::pair<std::string, std::string>> choices;
};

std::string styleOf(const LayoutKind& kind) {
    if (kind.focusZoom && kind.highContrast) {
        return "zoom-contrast";
    }
    if (kind.focusZoom) {
        return "zoom";
    }
    return kind.highContrast ? "contrast" : "plain";
}

// The values of a picture's attributes, by the filter's name.
std::map<std::string, std::string> attributesOf(const LayoutKind& kind) {
    return {{"pad", kind.keyboard ? "keyboard" : "pinpad"},
            {"orientation", kind.vertical ? "portrait" : "landscape"},
            {"direction", kind.reverse ? "reverse" : "normal"},
            {"look", styleOf(kind)}};
}

std::vector<Filter> filters(const std::vector<std::string>& languages) {
    std::vector<Filter> result = {
        {"pad", "Pad", {{"pinpad", "PIN pad"}, {"keyboard", "Keyboard"}}},
        {"orientation", "Orientation", {{"landscape", "Landscape"}, {"portrait", "Portrait"}}},
        {"direction", "Direction", {{"normal", "Normal"}, {"reverse", "Reverse"}}},
        {"look",
         "Style",
         {{"plain", "Plain"}, {"zoom", "Focus zoom"}, {"contrast", "High contrast"}, {"zoom-contrast", "Both"}}},
        {"language", "Language", {}}};
    for (const std::string& language : languages) {
        result.back().choices.emplace_back(language, language);
    }
    return result;
}

void writeFilter(const Filter& filter, std::ostream& page) {
    page << "<label>" << filter.legend << " <select data-filter=\"" << filter.name
         << "\"><option value=\"\">All</option>";
    for (const auto& [value, label] : filter.choices) {
        page << "<option value=\"" << escapedMarkup(value) << "\">" << escapedMarkup(label) << "</option>";
    }
    page << "</select></label>\n";
}

void writeLayout(const GalleryLayout& layout, const std::vector<std::string>& languages, std::ostream& page) {
    page << "<section";
    for (const auto& [name, value] : attributesOf(layout.kind)) {
        page << " data-" << name << "=\"" << value << "\"";
    }
    page << ">\n<h2>" << escapedMarkup(layout.name) << "</h2>\n<div class=\"row\">\n";
    for (const std::string& language : languages) {
        const std::string picture = escapedMarkup(pictureOf(layout, language));
        page << "<figure data-language=\"" << escapedMarkup(language) << "\"><a href=\"" << picture << "\"><img src=\""
             << picture << "\" loading=\"lazy\" alt=\"" << escapedMarkup(layout.name) << " in "
             << escapedMarkup(language) << "\"></a><figcaption>" << escapedMarkup(language)
             << "</figcaption></figure>\n";
    }
    page << "</div>\n</section>\n";
}

}  // namespace

std::string pictureOf(const GalleryLayout& layout, const std::string& language) {
    return "pictures/" + layout.name + "." + language + ".png";
}

std::string galleryPage(const std::vector<GalleryLayout>& layouts, const std::vector<std::string>& languages) {
    std::ostringstream page;
    page << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
         << "<meta name=\"viewport\" content=\"width=device-width\">\n<title>Layouts</title>\n"
         << "<link rel=\"stylesheet\" href=\"gallery.css\">\n<script src=\"gallery.js\" defer></script>\n</head>\n"
         << "<body>\n<header>\n<h1>Layouts</h1>\n<form id=\"filters\">\n";
    for (const Filter& filter : filters(languages)) {
        writeFilter(filter, page);
    }
    page << "<button type=\"reset\">Show all</button>\n</form>\n<p id=\"count\" aria-live=\"polite\">"
         << layouts.size() * languages.size() << " pictures</p>\n</header>\n<main>\n";
    for (const GalleryLayout& layout : layouts) {
        writeLayout(layout, languages, page);
    }
    page << "</main>\n<dialog id=\"enlarged\"><img alt=\"\"><p></p></dialog>\n</body>\n</html>\n";
    return page.str();
}

}  // namespace vaultpad::tools
