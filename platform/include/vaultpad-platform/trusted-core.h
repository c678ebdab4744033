/*
 * The trusted-execution client: one session with a trusted application (TA).
 *
 * A context holds one session. Blocks are shared memory created on a context; values are appended to a block in call
 * order and consumed in order. An invoked event carries the context's new blocks to the TA. A null or stale context or
 * block is a failure, never a crash. A context and its blocks belong to one thread at a time.
 */
#ifndef VAULTPAD_PLATFORM_TRUSTED_CORE_H
#define VAULTPAD_PLATFORM_TRUSTED_CORE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The three constant arguments of tzfw_core_create_shared_memory(). */
enum { VAULTPAD_TRUSTED_MEMORY_TYPE = 0, VAULTPAD_TRUSTED_MEMORY_IN = 3, VAULTPAD_TRUSTED_MEMORY_OUT = 3 };

/* Makes a context; *out is unused. Returns null on failure. Released with tzfw_core_finalize_context(). */
void* tzfw_core_initialize_context(uint32_t* out);

/* Names the TA to talk to; clock_seq_and_node has 8 bytes. Returns 0 on success. */
int tzfw_core_set_uuid(void* context, uint32_t time_low, uint16_t time_mid, uint16_t time_hi_and_version,
                       const uint8_t* clock_seq_and_node);

/* Opens the session. Returns 0 on success. */
int tzfw_core_open_session(void* context);

/* Closes the session. Returns 0 on success. */
int tzfw_core_close_session(void* context);

/* Releases a context, its session and its blocks. */
void tzfw_core_finalize_context(void* context);

/* Makes a zeroed block of size bytes. Returns null on failure. */
void* tzfw_core_create_shared_memory(void* context, int type, uint32_t size, int in_flags, int out_flags);

/* Appends a word. Returns 0; anything else when the block has no room for it. */
int tzfw_core_write_uint(void* context, void* block, uint32_t value);

/* Appends a text with its NUL. Returns 0; anything else when the block has no room for it. */
int tzfw_core_write_string(void* context, void* block, const char* text);

/* Appends size bytes. Returns 0; anything else when the block has no room for them. */
int tzfw_core_write_blob(void* context, void* block, const void* data, uint32_t size);

/* Carries the event to the TA and waits for it. Returns 0 when the TA accepted it. */
int tzfw_core_invoke_event(void* context, uint32_t event);

/* Consumes a word. Returns 0; anything else when the block holds no more, then *value is untouched. */
int tzfw_core_read_uint(void* context, void* block, uint32_t* value);

/*
 * Consumes size bytes: *data points into the block and is valid until the block is released. Returns 0; anything else
 * when the block holds no more, then *data is untouched.
 */
int tzfw_core_read_blob(void* context, void* block, void** data, uint32_t size);

/* Releases a block. */
void tzfw_core_release_shared_memory(void* context, void* block);

#ifdef __cplusplus
}
#endif

#endif
