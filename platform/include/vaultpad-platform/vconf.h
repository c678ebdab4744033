/*
 * The platform's settings.
 *
 * Thread safe. A key that does not exist is a failure, not a default.
 */
#ifndef VAULTPAD_PLATFORM_VCONF_H
#define VAULTPAD_PLATFORM_VCONF_H

#ifdef __cplusplus
extern "C" {
#endif

/* Reads an integer setting into *value. Returns 0; negative on failure, then *value is untouched. */
int vconf_get_int(const char* key, int* value);

/* Reads a text setting. Returns a malloc'd text that the caller frees, or null on failure. */
char* vconf_get_str(const char* key);

#ifdef __cplusplus
}
#endif

#endif
