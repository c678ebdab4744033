#include "helper-paths.h"

#include <common/installed-path.h>

#include <string>

namespace vaultpad {

namespace {

const char kHere = 0;

}  // namespace

const char* backgroundHelperPath() {
    static const auto* const path = new std::string(installedPath(&kHere, VAULTPAD_APP_ROOT "/vaultpad/vault-pad-bg"));
    return path->c_str();
}

const char* voiceMakerPath() {
    static const auto* const path =
        new std::string(installedPath(&kHere, VAULTPAD_APP_ROOT "/vaultpad/vault-voice-maker"));
    return path->c_str();
}

}  // namespace vaultpad
