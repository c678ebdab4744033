/*
 * Grabbing of the remote control's keys over the Wayland global "tizen_keyrouter".
 *
 * Call from the thread that owns the Wayland display. Every int function returns 1 on success.
 */
#ifndef VAULTPAD_PLATFORM_KEY_ROUTER_H
#define VAULTPAD_PLATFORM_KEY_ROUTER_H

#ifdef __cplusplus
extern "C" {
#endif

struct wl_display;
struct wl_registry;
struct wl_seat;
struct wl_surface;

/* Grab mode: nobody else receives the key. */
enum { VAULTPAD_KEY_ROUTER_EXCLUSIVE = 4 };

/* What the int functions return on success. */
enum { VAULTPAD_KEY_ROUTER_OK = 1 };

/* A list of keys; its memory belongs to the key router's library, which frees it on reset. */
typedef struct KeyRouter_KeyList {
    void* keys;
    unsigned int count;
} KeyRouter_KeyList;

/* Binds the registry global with this id. The Wayland objects stay the caller's. */
int KeyRouter_Initialize(struct wl_display* display, struct wl_registry* registry, struct wl_seat* seat,
                         unsigned int global_id);

/* Lets go of what KeyRouter_Initialize() bound; harmless when nothing is. */
void KeyRouter_Finalize(void);

/* Empties a list. */
int KeyRouter_Reset_KeyList(KeyRouter_KeyList* list);

/* Adds every key of the remote control with the grab mode. */
int KeyRouter_Add_All_Key(int mode, KeyRouter_KeyList* list);

/* Takes one key of the mode off the list. */
int KeyRouter_Remove_Key(const char* name, int mode, KeyRouter_KeyList* list);

/* Grabs the keys of the list for the surface. */
int KeyRouter_Set_KeyList(struct wl_surface* surface, KeyRouter_KeyList* list);

/* Releases the keys of the list for the surface. */
int KeyRouter_UnSet_KeyList(struct wl_surface* surface, KeyRouter_KeyList* list);

/* Waits until the compositor has handled what was sent. The television's EFL has it, a desktop's has not. */
void ecore_wl2_sync(void);

#ifdef __cplusplus
}
#endif

#endif
