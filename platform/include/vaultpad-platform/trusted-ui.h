/*
 * The trusted-UI client: the description of the secure display that the TA is given.
 */
#ifndef VAULTPAD_PLATFORM_TRUSTED_UI_H
#define VAULTPAD_PLATFORM_TRUSTED_UI_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Makes a context; *error is 0 on success. Returns null on failure. */
void* tzfw_tui_create_context(int* error);

/* Returns the description, which lives as long as the context; null for a null or stale context. */
void* tzfw_tui_get_gp_info(void* tui_context);

/* Returns the description's size in bytes. */
uint32_t tzfw_tui_get_gp_info_size(void);

/* Releases a context. */
void tzfw_tui_release_context(void* tui_context);

#ifdef __cplusplus
}
#endif

#endif
