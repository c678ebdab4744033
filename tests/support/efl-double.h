/*
 * The parts of EFL that key grabbing meets: a Wayland connection with globals, and the grab window.
 *
 * The linker redirects (--wrap) the calls of the objects in a test executable. Without a test's word there is no
 * Wayland connection, and drawing objects reach EFL. Calls that concern the grab window are recorded in the platform's
 * journal. In C, because EFL's Ecore-Wl2 header is not valid C++.
 */
#ifndef VAULTPAD_TESTS_SUPPORT_EFL_DOUBLE_H
#define VAULTPAD_TESTS_SUPPORT_EFL_DOUBLE_H

#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct EflDouble {
    bool wayland_connected;
    bool has_key_router;    /* among the globals, as global VAULTPAD_TEST_KEY_ROUTER_ID */
    bool window_has_canvas; /* the grab window has one */
    int main_loop_depth;    /* how often the main-loop lock is held; changes when the library takes it */
    int main_loop_calls;    /* how often something was run on the main loop for the grab window */
    int windows;            /* how many grab windows were made */
} EflDouble;

enum { VAULTPAD_TEST_KEY_ROUTER_ID = 17 };

extern EflDouble vaultpad_test_efl;

/* No connection, a window with a canvas. */
void vaultpad_test_reset_efl(void);

/* Provided by the journal: records a call. */
void vaultpad_test_record(const char* function, const char* arguments);

#ifdef __cplusplus
}
#endif

#endif
