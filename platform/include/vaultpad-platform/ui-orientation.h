/*
 * The platform's user-interface orientation.
 */
#ifndef VAULTPAD_PLATFORM_UI_ORIENTATION_H
#define VAULTPAD_PLATFORM_UI_ORIENTATION_H

#ifdef __cplusplus
extern "C" {
#endif

/* Returns 0 for left-to-right interfaces, anything else when the interface is mirrored. */
int ua_UI_orientation_get(void);

#ifdef __cplusplus
}
#endif

#endif
