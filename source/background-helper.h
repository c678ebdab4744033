/* The background helper process that runs while a pad starts up. */
#ifndef VAULTPAD_SOURCE_BACKGROUND_HELPER_H
#define VAULTPAD_SOURCE_BACKGROUND_HELPER_H

#include <sys/types.h>

namespace vaultpad {

/*
 * Starts the helper with its two arguments. Returns its process id, -1 when it could not be forked. Where the helper's
 * executable is missing this returns twice: 0 in the child, which goes on with the start-up like the parent. Intended.
 */
pid_t startBackgroundHelper(const char* mode, const char* voiceConnection);

/* Kills the helper, unless the id is -1, and sets the id to -1. Never waits. */
void killBackgroundHelper(int& pid);

/* Reaps helpers that were killed and have ended since. Never waits. */
void reapBackgroundHelpers();

}  // namespace vaultpad

#endif
