/*
 * The platform's log.
 *
 * Thread safe. Never fails visibly: a line that cannot be written is lost.
 */
#ifndef VAULTPAD_PLATFORM_DLOG_H
#define VAULTPAD_PLATFORM_DLOG_H

#ifdef __cplusplus
extern "C" {
#endif

/* Priorities in use. */
enum { VAULTPAD_DLOG_INFO = 4, VAULTPAD_DLOG_ERROR = 6 };

/* The log buffer in use. */
enum { VAULTPAD_DLOG_MAIN = 0 };

/*
 * Writes one line to the log. tag and format are read during the call only; format and its arguments are printf's.
 * Returns the number of bytes written, negative on failure.
 */
int __dlog_print(int log_id, int priority, const char* tag, const char* format, ...)
    __attribute__((format(printf, 4, 5)));

#ifdef __cplusplus
}
#endif

#endif
