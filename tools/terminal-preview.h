/* A picture as text for the terminal. */
#ifndef VAULTPAD_TOOLS_TERMINAL_PREVIEW_H
#define VAULTPAD_TOOLS_TERMINAL_PREVIEW_H

#include <string>

#include "display/bitmap.h"

namespace vaultpad::tools {

/* As wide and as fine as the terminal on standard output allows; 80 columns elsewhere. Ends with a line feed. */
std::string terminalPreview(const secureworld::Bitmap& picture);

}  // namespace vaultpad::tools

#endif
