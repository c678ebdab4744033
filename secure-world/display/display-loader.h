// Brings a secure display up by its name.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_LOADER_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_LOADER_H

#include <memory>
#include <string>

#include "display/display.h"

namespace vaultpad::secureworld {

// name: none, terminal, png or window. All but none are modules installed with the program, so that a session without a
// display does not wait for their libraries. Throws std::runtime_error with a line for the log.
std::unique_ptr<Display> loadDisplay(const std::string& name, const DisplaySettings& settings);

}  // namespace vaultpad::secureworld

#endif
