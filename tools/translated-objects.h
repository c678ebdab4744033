/* Which of a layout's objects look different in another language. */
#ifndef VAULTPAD_TOOLS_TRANSLATED_OBJECTS_H
#define VAULTPAD_TOOLS_TRANSLATED_OBJECTS_H

#include <string>

#include "context/element-container.h"

namespace vaultpad::tools {

/* Whether a text within the top-level object is translated. */
bool isTranslated(const context::ElementContainer& layout, const std::string& objectId);

}  // namespace vaultpad::tools

#endif
