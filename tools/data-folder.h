/* The files that come with the program. */
#ifndef VAULTPAD_TOOLS_DATA_FOLDER_H
#define VAULTPAD_TOOLS_DATA_FOLDER_H

#include <filesystem>
#include <string>

namespace vaultpad::tools {

/* The path of one of them, found from where the program is. Throws std::runtime_error when it is missing. */
std::filesystem::path dataFile(const std::string& name);

/* The folder of the installed layouts, images and translations. */
std::filesystem::path installedResources();

}  // namespace vaultpad::tools

#endif
