/*
 * Grabbing of the remote control's keys for the duration of a session. One set of state per process. The grab
 * window is shown and hidden on EFL's main loop; the key router itself is called on the caller's thread. The power keys
 * are never grabbed.
 */
#ifndef VAULTPAD_SOURCE_VAULT_PAD_KEYROUTER_H
#define VAULTPAD_SOURCE_VAULT_PAD_KEYROUTER_H

/* Sets the key router up; true at once when it is. A failure is logged and undoes nothing. */
bool vault_pad_keyrouter_initialize();

/* Tells whether it is set up. */
bool vault_pad_keyrouter_is_initialized();

/* Grabs the keys and shows the grab window. */
bool vault_pad_keyrouter_grab();

/* Releases the keys and hides the window; nothing when not set up. */
void vault_pad_keyrouter_ungrab();

/* Lets go of the key router; nothing when not set up. Window and Wayland objects stay. */
void vault_pad_keyrouter_finalize();

#endif
