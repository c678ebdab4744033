/* Pictures as PNG files. */
#ifndef VAULTPAD_TOOLS_PNG_FILE_H
#define VAULTPAD_TOOLS_PNG_FILE_H

#include <filesystem>

#include "display/bitmap.h"

namespace vaultpad::tools {

/* Writes the picture's colours. Whoever watches the file finds whole pictures only. Throws std::runtime_error. */
void writePng(const std::filesystem::path& path, const secureworld::Bitmap& picture);

/* The picture made smaller by a whole factor, each pixel the mean of those it stands for. */
secureworld::Bitmap reduced(const secureworld::Bitmap& picture, int factor);

}  // namespace vaultpad::tools

#endif
