// Where a pad will be before any of its images has arrived.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_PAD_PLACE_H
#define VAULTPAD_SECURE_WORLD_SESSION_PAD_PLACE_H

#include "pad/geometry.h"
#include "session/requests.h"

namespace vaultpad::secureworld {

// The size of the screen as the viewer sees it.
Size viewerScreen(const PadType& type);

// A rectangle of the panel as the viewer sees it.
Rect viewerPlace(const Rect& panelPlace, const PadType& type);

// The pad's own area at its announced origin, as the viewer sees it. May reach beyond the screen.
Rect expectedArea(const PadType& type);

}  // namespace vaultpad::secureworld

#endif
