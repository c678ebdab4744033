// A secure display, and how one that needs heavy libraries is loaded.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_DISPLAY_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace vaultpad::secureworld {

// Opaque pixels 0xFFRRGGBB, row by row, upright for the viewer; stride counts pixels. Borrowed for the call.
struct Picture {
    const std::uint32_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::size_t stride = 0;
};

class Display {
public:
    virtual ~Display() = default;

    // Whether show() does anything with a picture.
    virtual bool wantsPictures() const { return true; }

    // Shows a picture in the place of the one before. Throws std::runtime_error when it cannot.
    virtual void show(const Picture& picture) = 0;

    // Takes the picture off the display.
    virtual void hide() {}

    // Milliseconds after which idle() wants to be called again, -1 for never.
    virtual int idleInterval() const { return -1; }
    virtual void idle() {}

    // Whether the viewer has shut the display since the latest show().
    virtual bool closedByViewer() const { return false; }
};

struct DisplaySettings {
    std::string framesFolder;  // display png: where the pictures go
};

// The function that a display's module exports. Returns a display that the caller deletes, or null with the reason in
// *error. settings and error are borrowed for the call.
using DisplayFactory = Display* (*)(const DisplaySettings* settings, std::string* error);
constexpr const char* kDisplayFactoryName = "vaultpadCreateDisplay";

}  // namespace vaultpad::secureworld

#endif
