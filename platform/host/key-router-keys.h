/* The keys of the remote control. */
#ifndef VAULTPAD_PLATFORM_HOST_KEY_ROUTER_KEYS_H
#define VAULTPAD_PLATFORM_HOST_KEY_ROUTER_KEYS_H

#include <vector>

namespace vaultpad::host {

/* Their names, each once; the texts live as long as the process. */
const std::vector<const char*>& remoteControlKeys();

}  // namespace vaultpad::host

#endif
