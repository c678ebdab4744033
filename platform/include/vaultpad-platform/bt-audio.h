/*
 * Bluetooth audio.
 */
#ifndef VAULTPAD_PLATFORM_BT_AUDIO_H
#define VAULTPAD_PLATFORM_BT_AUDIO_H

#ifdef __cplusplus
extern "C" {
#endif

/* What bt_audio_stop_streaming() returns when nothing was streaming. */
#define VAULTPAD_BT_NOT_STREAMING ((int)0xFE40010Bu)

/* Stops streaming to a Bluetooth speaker. Returns 0; VAULTPAD_BT_NOT_STREAMING or another code otherwise. */
int bt_audio_stop_streaming(void);

#ifdef __cplusplus
}
#endif

#endif
