#include "installation.h"

#include <common/installed-path.h>

namespace vaultpad::host {

namespace {

const char kHere = 0;

}  // namespace

std::string installedApplicationRoot() {
    return installedPath(&kHere, VAULTPAD_HOST_APP_ROOT);
}

std::string installedTa() {
    return installedPath(&kHere, VAULTPAD_HOST_TA);
}

}  // namespace vaultpad::host
