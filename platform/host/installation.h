/* Where the host platform finds what is installed with it. */
#ifndef VAULTPAD_PLATFORM_HOST_INSTALLATION_H
#define VAULTPAD_PLATFORM_HOST_INSTALLATION_H

#include <string>

namespace vaultpad::host {

/* The folder that holds "vaultpad/res" where the television's key file names no other. */
std::string installedApplicationRoot();

/* The emulated trusted application where the television's key file names no other. */
std::string installedTa();

}  // namespace vaultpad::host

#endif
