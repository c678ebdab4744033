/* The demo's keys as a television's: through a compositor that routes them to the client that grabbed them. */
#ifndef VAULTPAD_DEMO_WAYLAND_REMOTE_H
#define VAULTPAD_DEMO_WAYLAND_REMOTE_H

#include <memory>

#include "remote-control.h"

namespace vaultpad_demo {

/*
 * Starts the compositor beside this program and announces it to the library, so make it before the pad is opened. Each
 * key of the hand is pressed there, and comes back as the key event that this process received. Throws
 * std::runtime_error, also from next(): when a key does not come back.
 */
std::unique_ptr<RemoteControl> makeWaylandRemote(std::unique_ptr<RemoteControl> hand);

}  // namespace vaultpad_demo

#endif
