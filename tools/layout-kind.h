/* What a layout file's name tells about the pad. */
#ifndef VAULTPAD_TOOLS_LAYOUT_KIND_H
#define VAULTPAD_TOOLS_LAYOUT_KIND_H

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "pad/geometry.h"
#include "session/requests.h"

namespace vaultpad::tools {

struct LayoutKind {
    bool keyboard = false;
    bool vertical = false;
    bool reverse = false;
    bool focusZoom = false;
    bool highContrast = false;
};

/* Reads "[vertical-][reverse-]keyboard|pinpad[-e|-h|-eh].xml"; nothing for any other name. */
std::optional<LayoutKind> layoutKindOf(const std::filesystem::path& file);

/* A VaultPadTaOrientation by its name, landscape, portrait or portrait-reversed; throws UsageError for another. */
std::uint32_t orientationCalled(const std::string& name);

/* The pad as the trusted application is told of it, at its place on the screen. */
secureworld::PadType padTypeOf(const LayoutKind& kind, std::uint32_t orientation);

/* The orientation that a layout is made for; of the two portrait ones the upright one. */
std::uint32_t usualOrientation(const LayoutKind& kind);

/* Width and height of the area that the layout may fill. */
secureworld::Size areaOf(const LayoutKind& kind);

}  // namespace vaultpad::tools

#endif
