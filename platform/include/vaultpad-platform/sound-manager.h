/*
 * Volume and speaker selection. Every function returns 0 on success; on failure *out values are untouched.
 */
#ifndef VAULTPAD_PLATFORM_SOUND_MANAGER_H
#define VAULTPAD_PLATFORM_SOUND_MANAGER_H

#ifdef __cplusplus
extern "C" {
#endif

/* The highest speaker selection that is not a network speaker. */
enum { VAULTPAD_SPEAKER_LAST_LOCAL = 2 };

/* Volume limits. */
enum { VAULTPAD_VOLUME_MAX = 100 };

/* Reads the master volume, 0 to 100. */
int sound_manager_get_master_volume(int* volume);

/* Sets the master volume, 0 to 100; any other value is a failure. */
int sound_manager_set_master_volume(int volume);

/* Reads which speaker is selected. */
int sound_manager_get_speaker_selection(int* selection);

#ifdef __cplusplus
}
#endif

#endif
