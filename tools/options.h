/* The command line. */
#ifndef VAULTPAD_TOOLS_OPTIONS_H
#define VAULTPAD_TOOLS_OPTIONS_H

#include <optional>

#include "check/check.h"
#include "gallery/gallery.h"
#include "render.h"

namespace vaultpad::tools {

/* Exit status: findings or a failure, and wrong use. */
constexpr int kStatusFindings = 1;
constexpr int kStatusWrongUse = 2;

enum class Command { Check, Render, Gallery, Watch };

struct Options {
    Command command = Command::Check;
    std::vector<std::filesystem::path> files; /* check */
    CheckOptions check;                       /* check, watch */
    RenderOptions render;                     /* render, watch */
    GalleryOptions gallery;
};

/* Nothing when the program is to end with *status, after --help or after wrong use. */
std::optional<Options> readOptions(int argc, char** argv, int* status);

}  // namespace vaultpad::tools

#endif
