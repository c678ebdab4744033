// The command line.
#ifndef VAULTPAD_SECURE_WORLD_OPTIONS_H
#define VAULTPAD_SECURE_WORLD_OPTIONS_H

#include <optional>
#include <string>

#include "display/screen.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {

struct Options {
    int channel = -1;              // descriptor of this end of the socket pair
    std::string display = "none";  // none, terminal, png or window
    std::string framesFolder;      // for display png
    Screen::View view = Screen::View::Pad;
    std::string storeFolder;  // empty: the image store is not written out
    VoiceSettings voice;
    std::string log = "stderr";
};

// Reads the command line. Returns nothing, with the exit status in *status, when there is nothing to run: help, version
// or a mistake, all of which have been told.
std::optional<Options> readOptions(int argc, char** argv, int* status);

}  // namespace vaultpad::secureworld

#endif
