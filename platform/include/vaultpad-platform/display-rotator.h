/*
 * The motor that turns the panel.
 */
#ifndef VAULTPAD_PLATFORM_DISPLAY_ROTATOR_H
#define VAULTPAD_PLATFORM_DISPLAY_ROTATOR_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Panel states that matter to a pad; every other status is landscape. */
enum { VAULTPAD_ROTATOR_PORTRAIT = 0, VAULTPAD_ROTATOR_PORTRAIT_REVERSED = 2 };

/* Tells whether this television can turn its panel. */
bool display_rotator_is_supported(void);

/* Reads the panel's state into *status. Returns 0; anything else on failure, then *status is untouched. */
int display_rotator_get_status(int* status);

#ifdef __cplusplus
}
#endif

#endif
