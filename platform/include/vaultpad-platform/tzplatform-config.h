/*
 * Where the platform keeps an application's files.
 */
#ifndef VAULTPAD_PLATFORM_TZPLATFORM_CONFIG_H
#define VAULTPAD_PLATFORM_TZPLATFORM_CONFIG_H

#ifdef __cplusplus
extern "C" {
#endif

/* The path variable of the read-only application root, below which "vaultpad/res/" is installed. */
enum { VAULTPAD_TZPLATFORM_APPLICATION_ROOT = 28 };

/*
 * Joins the directory that the variable stands for and a relative path. Returns a text that stays valid until the
 * next call on the same thread (copy it); null for an unknown variable.
 */
const char* tzplatform_mkpath(int variable, const char* path);

#ifdef __cplusplus
}
#endif

#endif
