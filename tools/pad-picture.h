/* The pad as the secure display shows it. */
#ifndef VAULTPAD_TOOLS_PAD_PICTURE_H
#define VAULTPAD_TOOLS_PAD_PICTURE_H

#include <cstddef>
#include <string>
#include <vector>

#include "display/bitmap.h"
#include "drawn-layout.h"
#include "session/requests.h"

namespace vaultpad::tools {

struct PadState {
    std::string page;      /* empty: the page that the pad opens on */
    std::string focus;     /* keysym; empty: the key that has the focus when the page opens the pad */
    std::size_t typed = 0; /* characters in the input field */
};

/*
 * Composes the images as the trusted application does. The picture is opaque and upright for the viewer. Throws
 * UsageError for a page or key that the pad has not, std::runtime_error for a pad that is not on the screen.
 */
secureworld::Bitmap composePad(const std::vector<DrawnImage>& images, const secureworld::PadType& type,
                               const PadState& state);

}  // namespace vaultpad::tools

#endif
