// Chafa's objects as C++ owns them, for everything that draws a Bitmap in a terminal.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_CHAFA_HANDLES_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_CHAFA_HANDLES_H

#include <chafa.h>

#include <memory>

namespace vaultpad::secureworld {

// How Chafa reads a Bitmap's words.
constexpr ChafaPixelType kPixelType =
    G_BYTE_ORDER == G_LITTLE_ENDIAN ? CHAFA_PIXEL_BGRA8_UNASSOCIATED : CHAFA_PIXEL_ARGB8_UNASSOCIATED;

struct Release {
    void operator()(ChafaTermInfo* info) const { chafa_term_info_unref(info); }
    void operator()(ChafaCanvasConfig* config) const { chafa_canvas_config_unref(config); }
    void operator()(ChafaCanvas* canvas) const { chafa_canvas_unref(canvas); }
    void operator()(ChafaSymbolMap* map) const { chafa_symbol_map_unref(map); }
    void operator()(GString* text) const { g_string_free(text, TRUE); }
    void operator()(gchar** list) const { g_strfreev(list); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, Release>;

}  // namespace vaultpad::secureworld

#endif
