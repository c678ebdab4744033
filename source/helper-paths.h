/* Where the helper executables are installed: below VAULTPAD_APP_ROOT. Both names stay valid until the process ends. */
#ifndef VAULTPAD_SOURCE_HELPER_PATHS_H
#define VAULTPAD_SOURCE_HELPER_PATHS_H

namespace vaultpad {

const char* backgroundHelperPath();
const char* voiceMakerPath();

}  // namespace vaultpad

#endif
