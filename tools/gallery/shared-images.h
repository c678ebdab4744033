/* Images that several processes make use of. */
#ifndef VAULTPAD_TOOLS_GALLERY_SHARED_IMAGES_H
#define VAULTPAD_TOOLS_GALLERY_SHARED_IMAGES_H

#include <string>
#include <vector>

#include "drawn-layout.h"

namespace vaultpad::tools {

/* Images for the way from the process that drew them to the one that shares them; without what is told of texts. */
std::string serialised(const std::vector<DrawnImage>& images);
std::vector<DrawnImage> imagesFrom(const std::string& bytes);

}  // namespace vaultpad::tools

#endif
