/* The television's screen. */
#ifndef VAULTPAD_COMPOSITOR_OUTPUT_H
#define VAULTPAD_COMPOSITOR_OUTPUT_H

#include <wayland-server-core.h>

namespace vaultpad::compositor {

/* Offers the global wl_output; it goes with the display. */
void offerOutput(wl_display* display);

}  // namespace vaultpad::compositor

#endif
