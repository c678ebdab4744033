/*
 * The library's log lines. Every line starts with the source file's base name, the function and the line.
 *
 * Formats must be string literals.
 */
#ifndef VAULTPAD_SOURCE_LOG_H
#define VAULTPAD_SOURCE_LOG_H

#include <vaultpad-platform/dlog.h>

/* Base name of the file that contains the call. */
#define VAULTPAD_LOG_FILE __FILE_NAME__

#define VAULTPAD_LOG_LINE(priority, tag, format, ...)                                                    \
    __dlog_print(VAULTPAD_DLOG_MAIN, priority, tag, "%s: %s(%d) > " format, VAULTPAD_LOG_FILE, __func__, \
                 __LINE__ __VA_OPT__(, ) __VA_ARGS__)

/* The entry-point unit writes plain messages. */
#define VPAD_LOG_INFO(format, ...) VAULTPAD_LOG_LINE(VAULTPAD_DLOG_INFO, "VPAD", format __VA_OPT__(, ) __VA_ARGS__)
#define VPAD_LOG_ERROR(format, ...) VAULTPAD_LOG_LINE(VAULTPAD_DLOG_ERROR, "VPAD", format __VA_OPT__(, ) __VA_ARGS__)

/* All other units wrap theirs in a colour sequence: bold, the colour, black background. */
#define VAULTPAD_LOG_COLOURED(priority, colour, format, ...)                                    \
    VAULTPAD_LOG_LINE(priority, "VAULTPAD_CA", "\033[%s;%s;%sm" format "\033[0m", "01", colour, \
                      "40" __VA_OPT__(, ) __VA_ARGS__)
#define CA_LOG_INFO(format, ...) VAULTPAD_LOG_COLOURED(VAULTPAD_DLOG_INFO, "32", format __VA_OPT__(, ) __VA_ARGS__)
#define CA_LOG_ERROR(format, ...) VAULTPAD_LOG_COLOURED(VAULTPAD_DLOG_ERROR, "31", format __VA_OPT__(, ) __VA_ARGS__)

#endif
