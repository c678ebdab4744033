#include <vaultpad-platform/display-rotator.h>

#include "call-guard.h"
#include "call-trace.h"
#include "television.h"

namespace {

using vaultpad::host::PanelPosition;

constexpr int kLandscape = 1; /* any status but the two that the header names */

PanelPosition rotatorPosition() {
    const auto settings = vaultpad::host::television();
    return settings ? settings->rotator : PanelPosition::kNone;
}

}  // namespace

bool display_rotator_is_supported(void) {
    const vaultpad::host::CallTrace trace(__func__);
    return rotatorPosition() != PanelPosition::kNone;
}

int display_rotator_get_status(int* status) {
    const PanelPosition position = rotatorPosition();
    if (position == PanelPosition::kNone || status == nullptr) {
        return vaultpad::host::kFailure;
    }
    switch (position) {
        case PanelPosition::kPortrait:
            *status = VAULTPAD_ROTATOR_PORTRAIT;
            break;
        case PanelPosition::kPortraitReversed:
            *status = VAULTPAD_ROTATOR_PORTRAIT_REVERSED;
            break;
        default:
            *status = kLandscape;
    }
    return 0;
}
