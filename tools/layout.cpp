#include "layout.h"

#include <vaultpad/ta-protocol.h>

#include "context/application-context-parser.h"
#include "host-services.h"

namespace vaultpad::tools {

std::shared_ptr<context::ElementContainer> readLayout(const std::filesystem::path& file,
                                                      const std::filesystem::path& images) {
    answerWithLayout(file.string());
    context::ApplicationContextParser parser;
    // Any mode will do: the platform's answer is the file.
    parser.setMode(0, 0, VAULTPAD_TA_IME_PINPAD, 0, VAULTPAD_TA_ORIENTATION_LANDSCAPE);
    std::shared_ptr<context::ElementContainer> container = parser.parse();
    if (!images.empty()) {
        container->imageBaseDirectory(images.string());
    }
    return container;
}

}  // namespace vaultpad::tools
