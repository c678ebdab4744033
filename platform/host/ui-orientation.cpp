#include <vaultpad-platform/ui-orientation.h>

#include "call-trace.h"
#include "television.h"

int ua_UI_orientation_get(void) {
    const vaultpad::host::CallTrace trace(__func__);
    const auto settings = vaultpad::host::television();
    return settings && settings->mirrored ? 1 : 0;
}
