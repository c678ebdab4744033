#include "session/pad-place.h"

#include "pad/turn.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr Size kPanel = {VAULTPAD_TA_SCREEN_WIDTH, VAULTPAD_TA_SCREEN_HEIGHT};

// The areas that layouts are drawn in.
constexpr Size kPinPad = {443, 486};
constexpr Size kPinPadEnlarged = {525, 578};
constexpr Size kKeyboard = {1284, 490};
constexpr Size kKeyboardEnlarged = {1538, 580};
constexpr Size kKeyboardPortrait = {1080, 480};

Size padSize(const PadType& type) {
    if (type.type == VAULTPAD_TA_IME_PINPAD) {
        return type.enlarged ? kPinPadEnlarged : kPinPad;
    }
    if (type.orientation != VAULTPAD_TA_ORIENTATION_LANDSCAPE) {
        return kKeyboardPortrait;
    }
    return type.enlarged ? kKeyboardEnlarged : kKeyboard;
}

}  // namespace

Size viewerScreen(const PadType& type) {
    return turned(kPanel, panelToViewer(type.orientation));
}

Rect viewerPlace(const Rect& panelPlace, const PadType& type) {
    return turned(panelPlace, kPanel, panelToViewer(type.orientation));
}

Rect expectedArea(const PadType& type) {
    const Size onPanel = turned(padSize(type), inverse(panelToViewer(type.orientation)));
    return viewerPlace({type.baseX, type.baseY, onPanel.width, onPanel.height}, type);
}

}  // namespace vaultpad::secureworld
