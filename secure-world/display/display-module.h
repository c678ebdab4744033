// For the source of a display's module: defines the one function that it exports.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_MODULE_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_MODULE_H

#include <exception>
#include <string>

#include "display/display.h"

// Type is a Display that is made of a const DisplaySettings& and throws when it cannot come up.
#define VAULTPAD_DISPLAY_MODULE(Type)                                                                        \
    extern "C" __attribute__((visibility("default"))) vaultpad::secureworld::Display* vaultpadCreateDisplay( \
        const vaultpad::secureworld::DisplaySettings* settings, std::string* error) {                        \
        try {                                                                                                \
            return new Type(*settings);                                                                      \
        } catch (const std::exception& failure) {                                                            \
            *error = failure.what();                                                                         \
            return nullptr;                                                                                  \
        }                                                                                                    \
    }

#endif
