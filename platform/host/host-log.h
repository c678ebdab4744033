/* The host platform's own log lines. Formats must be string literals. */
#ifndef VAULTPAD_PLATFORM_HOST_HOST_LOG_H
#define VAULTPAD_PLATFORM_HOST_HOST_LOG_H

#include <vaultpad-platform/dlog.h>

#define VAULTPAD_HOST_LOG_ERROR(...) __dlog_print(VAULTPAD_DLOG_MAIN, VAULTPAD_DLOG_ERROR, "HOST_PLATFORM", __VA_ARGS__)

#endif
