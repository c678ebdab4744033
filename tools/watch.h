/* Draws a layout again whenever it changes. */
#ifndef VAULTPAD_TOOLS_WATCH_H
#define VAULTPAD_TOOLS_WATCH_H

#include "check/check.h"
#include "render.h"

namespace vaultpad::tools {

/*
 * Checks and draws the layout now and after every change of the file or of its images, one line on standard output for
 * each drawing. Returns after SIGINT or SIGTERM. Throws std::system_error when the folder cannot be watched.
 */
void watch(const RenderOptions& picture, const CheckOptions& check);

}  // namespace vaultpad::tools

#endif
