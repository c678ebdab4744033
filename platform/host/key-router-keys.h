/* The keys of the remote control: what the key router may be asked for, and what the compositor's keyboard has. */
#ifndef VAULTPAD_PLATFORM_HOST_KEY_ROUTER_KEYS_H
#define VAULTPAD_PLATFORM_HOST_KEY_ROUTER_KEYS_H

#include <cstdint>
#include <vector>

namespace vaultpad::host {

struct RemoteControlKey {
    const char* name; /* the platform's; lives as long as the process */
    uint32_t code;    /* of the kernel's input events */
};

/* Each name and each code once. */
const std::vector<RemoteControlKey>& remoteControlKeys();

}  // namespace vaultpad::host

#endif
