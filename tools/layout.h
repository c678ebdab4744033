/* A layout file, read by the library's parser. */
#ifndef VAULTPAD_TOOLS_LAYOUT_H
#define VAULTPAD_TOOLS_LAYOUT_H

#include <filesystem>
#include <memory>

#include "context/element-container.h"

namespace vaultpad::tools {

/*
 * Reads the file. images: the folder that its images are in, or empty for the one that the file names. Throws
 * exception::Exception with the XML library's message.
 */
std::shared_ptr<context::ElementContainer> readLayout(const std::filesystem::path& file,
                                                      const std::filesystem::path& images);

}  // namespace vaultpad::tools

#endif
