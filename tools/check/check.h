/* Checks layout and voice files: against their schema, what is written in them, and what comes out when it is drawn. */
#ifndef VAULTPAD_TOOLS_CHECK_CHECK_H
#define VAULTPAD_TOOLS_CHECK_CHECK_H

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "languages.h"
#include "pad/geometry.h"

namespace vaultpad::tools {

struct CheckOptions {
    std::filesystem::path images;
    std::filesystem::path catalogues;
    std::string kindName;
    std::vector<std::string> languages = {kSourceLanguage};
    int minFont = 0; /* 0: the size that the layout states */
    std::optional<secureworld::Size> area;
    std::filesystem::path voiceLayout;
};

/*
 * Prints the findings on standard output and returns their number. What is drawn is checked in files whose text has no
 * findings. Throws UsageError, or another std::exception when checking itself fails.
 */
std::size_t checkFiles(const std::vector<std::filesystem::path>& files, const CheckOptions& options);

}  // namespace vaultpad::tools

#endif
