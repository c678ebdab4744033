#include "layout-kind.h"

#include <vaultpad/ta-protocol.h>

#include <regex>

#include "communication/screen-origin.h"
#include "session/pad-place.h"
#include "usage-error.h"

namespace vaultpad::tools {

std::optional<LayoutKind> layoutKindOf(const std::filesystem::path& file) {
    static const std::regex kName("(vertical-)?(reverse-)?(keyboard|pinpad)(-eh|-e|-h)?\\.xml");
    const std::string name = file.filename().string();
    std::smatch match;
    if (!std::regex_match(name, match, kName)) {
        return std::nullopt;
    }
    LayoutKind kind;
    kind.vertical = match[1].matched;
    kind.reverse = match[2].matched;
    kind.keyboard = match[3] == "keyboard";
    kind.focusZoom = match[4] == "-e" || match[4] == "-eh";
    kind.highContrast = match[4] == "-h" || match[4] == "-eh";
    return kind;
}

std::uint32_t orientationCalled(const std::string& name) {
    if (name == "landscape") {
        return VAULTPAD_TA_ORIENTATION_LANDSCAPE;
    }
    if (name == "portrait") {
        return VAULTPAD_TA_ORIENTATION_PORTRAIT;
    }
    if (name == "portrait-reversed") {
        return VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED;
    }
    throw UsageError("orientation '" + name + "' is unknown; use landscape, portrait or portrait-reversed");
}

std::uint32_t usualOrientation(const LayoutKind& kind) {
    return kind.vertical ? VAULTPAD_TA_ORIENTATION_PORTRAIT : VAULTPAD_TA_ORIENTATION_LANDSCAPE;
}

secureworld::PadType padTypeOf(const LayoutKind& kind, std::uint32_t orientation) {
    secureworld::PadType type;
    type.type = kind.keyboard ? VAULTPAD_TA_IME_KEYBOARD : VAULTPAD_TA_IME_PINPAD;
    type.enlarged = kind.focusZoom;
    type.rightToLeft = kind.reverse;
    type.orientation = orientation;
    const communication::ScreenOrigin* origin =
        communication::findScreenOrigin(static_cast<int>(type.type), type.enlarged, static_cast<int>(orientation));
    type.baseX = origin->x;
    type.baseY = origin->y;
    return type;
}

secureworld::Size areaOf(const LayoutKind& kind) {
    const secureworld::Rect area = secureworld::expectedArea(padTypeOf(kind, usualOrientation(kind)));
    return {area.width, area.height};
}

}  // namespace vaultpad::tools
