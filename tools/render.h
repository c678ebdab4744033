/* A layout's picture, in a file or on the terminal. */
#ifndef VAULTPAD_TOOLS_RENDER_H
#define VAULTPAD_TOOLS_RENDER_H

#include <filesystem>
#include <string>

#include "display/bitmap.h"
#include "languages.h"
#include "layout-kind.h"
#include "pad-picture.h"

namespace vaultpad::tools {

struct RenderOptions {
    std::filesystem::path file;
    std::filesystem::path output;
    bool terminal = false;
    std::string language = kSourceLanguage;
    std::string orientation; /* empty: the one that the layout is made for */
    std::string kindName;    /* file name that tells the kind of pad; empty: the file's own */
    std::filesystem::path images;
    std::filesystem::path catalogues;
    PadState state;
};

/* The kind of pad by the given file name or else by the file's own. Throws UsageError when it tells none. */
LayoutKind kindOfPad(const std::filesystem::path& file, const std::string& kindName);

/* The pad's picture. Once per process: the language stays set. Throws std::exception with a line for the user. */
secureworld::Bitmap renderPicture(const RenderOptions& options);

/* Writes or shows the picture; one line on standard error for every image that is missing. */
void render(const RenderOptions& options);

}  // namespace vaultpad::tools

#endif
