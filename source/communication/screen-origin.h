/* Where each kind of pad stands on the secure display. */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_SCREEN_ORIGIN_H
#define VAULTPAD_SOURCE_COMMUNICATION_SCREEN_ORIGIN_H

#include <cstdint>

namespace vaultpad::communication {

struct ScreenOrigin {
    int type;
    int enlarge;
    int orientation; /* 1, 3, or 0 for every other value */
    std::int32_t x;
    std::int32_t y;
    std::int32_t rotationExtent; /* portrait: the pad's height; portrait reversed: its width; else 0 */
};

/* Returns null for a type other than 1 and 2 or an enlarge other than 0 and 1. */
const ScreenOrigin* findScreenOrigin(int type, int enlarge, int orientation);

}  // namespace vaultpad::communication

#endif
