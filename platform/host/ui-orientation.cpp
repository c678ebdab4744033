#include <vaultpad-platform/ui-orientation.h>

#include "television.h"

int ua_UI_orientation_get(void) {
    const auto settings = vaultpad::host::television();
    return settings && settings->mirrored ? 1 : 0;
}
