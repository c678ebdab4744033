/* What the demo is asked to do. */
#ifndef VAULTPAD_DEMO_OPTIONS_H
#define VAULTPAD_DEMO_OPTIONS_H

#include <optional>
#include <string>
#include <vector>

namespace vaultpad_demo {

struct Options {
    std::string type = "pinpad";           /* pinpad, keyboard */
    int pinLength = 0;                     /* digits that complete the PIN pad; 0: the Done key does */
    std::string orientation = "landscape"; /* landscape, portrait, portrait-reversed */
    bool reverse = false;
    bool focusZoom = false;
    bool highContrast = false;
    std::string language = "C.UTF-8";
    std::string display; /* terminal, window, png, none */
    std::string frames = "frames";
    std::string view = "pad"; /* pad, screen */
    unsigned int rsaBits = 2048;
    std::string rsaKey;            /* PEM file; empty: a new key */
    std::string family = "csapi";  /* csapi, plain */
    std::vector<std::string> keys; /* empty on a terminal: the keyboard is the remote control */
    std::string log;               /* stderr, none, a file */
    bool voice = false;
    std::string voicePlayer; /* program that plays what is spoken; none: files beside the pictures */
    std::string store;       /* folder that the trusted application writes its images to, if any */

    bool isKeyboard() const { return type == "keyboard"; }
};

/*
 * Reads the command line. interactive: a person sits at the terminal. Returns nothing when the program is to end at
 * once, with exitCode set: after --help, or after a wrong option, which has been reported on stderr.
 */
std::optional<Options> parseOptions(int argc, char** argv, bool interactive, int& exitCode);

}  // namespace vaultpad_demo

#endif
