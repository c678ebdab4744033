#include "communication/screen-origin.h"

#include <vaultpad/ta-protocol.h>

namespace vaultpad::communication {

namespace {

constexpr int kLandscape = VAULTPAD_TA_ORIENTATION_LANDSCAPE;
constexpr int kPortrait = VAULTPAD_TA_ORIENTATION_PORTRAIT;
constexpr int kReversed = VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED;

constexpr ScreenOrigin kOrigins[] = {
    {VAULTPAD_TA_IME_PINPAD, 0, kPortrait, 0, 318, 486},     {VAULTPAD_TA_IME_PINPAD, 0, kReversed, 1434, 318, 443},
    {VAULTPAD_TA_IME_PINPAD, 0, kLandscape, 738, 590, 0},    {VAULTPAD_TA_IME_PINPAD, 1, kPortrait, 0, 277, 578},
    {VAULTPAD_TA_IME_PINPAD, 1, kReversed, 1342, 277, 525},  {VAULTPAD_TA_IME_PINPAD, 1, kLandscape, 697, 500, 0},
    {VAULTPAD_TA_IME_KEYBOARD, 0, kPortrait, 0, 0, 480},     {VAULTPAD_TA_IME_KEYBOARD, 0, kReversed, 1440, 0, 1080},
    {VAULTPAD_TA_IME_KEYBOARD, 0, kLandscape, 318, 590, 0},  {VAULTPAD_TA_IME_KEYBOARD, 1, kPortrait, 0, 0, 480},
    {VAULTPAD_TA_IME_KEYBOARD, 1, kReversed, 1440, 0, 1080}, {VAULTPAD_TA_IME_KEYBOARD, 1, kLandscape, 191, 500, 0},
};

}  // namespace

const ScreenOrigin* findScreenOrigin(int type, int enlarge, int orientation) {
    const int known = orientation == kPortrait || orientation == kReversed ? orientation : kLandscape;
    for (const ScreenOrigin& origin : kOrigins) {
        if (origin.type == type && origin.enlarge == enlarge && origin.orientation == known) {
            return &origin;
        }
    }
    return nullptr;
}

}  // namespace vaultpad::communication
