/* Windows: xdg_wm_base, toplevels that take any size; popups are refused. */
#ifndef VAULTPAD_COMPOSITOR_SHELL_H
#define VAULTPAD_COMPOSITOR_SHELL_H

#include <wayland-server-core.h>

namespace vaultpad::compositor {

/* Offers the global; it goes with the display. */
void offerShell(wl_display* display);

}  // namespace vaultpad::compositor

#endif
