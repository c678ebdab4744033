/* The gallery's HTML. */
#ifndef VAULTPAD_TOOLS_GALLERY_GALLERY_PAGE_H
#define VAULTPAD_TOOLS_GALLERY_GALLERY_PAGE_H

#include <string>
#include <vector>

#include "layout-kind.h"

namespace vaultpad::tools {

struct GalleryLayout {
    std::string name; /* without ".xml" */
    LayoutKind kind;
};

/* The path of a picture, from the page's folder. */
std::string pictureOf(const GalleryLayout& layout, const std::string& language);

/* The whole page; it needs gallery.css and gallery.js beside it, and nothing from elsewhere. */
std::string galleryPage(const std::vector<GalleryLayout>& layouts, const std::vector<std::string>& languages);

}  // namespace vaultpad::tools

#endif
