/* How the panel is turned. */
#ifndef VAULTPAD_SOURCE_ORIENTATION_H
#define VAULTPAD_SOURCE_ORIENTATION_H

namespace vaultpad {

/* Returns 0 landscape (or unknown), 1 portrait, 3 portrait reversed. Failures of the services are logged. */
int checkCurrentOrientation();

}  // namespace vaultpad

#endif
