/* The demo's keys as a television's: through a compositor that routes them to the client that grabbed them. */
#ifndef VAULTPAD_DEMO_WAYLAND_REMOTE_H
#define VAULTPAD_DEMO_WAYLAND_REMOTE_H

#include <memory>
#include <string>

#include "compositor/compositor-process.h"
#include "remote-control.h"

namespace vaultpad_demo {

/* The executable in this program's folder. */
std::string compositorBesideThisProgram();

/*
 * Announces the compositor to the library, so make it before the pad is opened. Each key of the hand is pressed there,
 * and comes back as the key event that this process received. next() throws std::runtime_error when none comes back.
 */
std::unique_ptr<RemoteControl> makeWaylandRemote(std::unique_ptr<RemoteControl> hand,
                                                 vaultpad::compositor::CompositorProcess& compositor);

}  // namespace vaultpad_demo

#endif
