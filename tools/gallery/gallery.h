/* One page with all layouts in all languages. */
#ifndef VAULTPAD_TOOLS_GALLERY_GALLERY_H
#define VAULTPAD_TOOLS_GALLERY_GALLERY_H

#include <filesystem>
#include <string>
#include <vector>

#include "data-folder.h"

namespace vaultpad::tools {

struct GalleryOptions {
    std::vector<std::filesystem::path> files; /* none: all layouts of the resources */
    std::filesystem::path output;
    std::filesystem::path resources = installedResources();
    std::vector<std::string> languages; /* none: all that have a catalogue */
    int reduction = 2;
    int jobs = 0; /* 0: one for each processor */
};

/*
 * Draws every layout in every language, several processes at a time, and writes index.html, its style and script, and
 * the pictures into the folder. Tells its progress on standard error. Throws UsageError or std::runtime_error.
 */
void makeGallery(const GalleryOptions& options);

}  // namespace vaultpad::tools

#endif
