#include "terminal-preview.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include "display/chafa-handles.h"

namespace vaultpad::tools {

namespace {

using secureworld::kPixelType;
using secureworld::Owned;
using secureworld::Release;

constexpr int kUsualColumns = 80;
constexpr int kUsualRows = 40;
constexpr float kUsualCellShape = 0.5F;  // width by height
winsize terminalSize() {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row < 2) {
        size = {};
        size.ws_col = kUsualColumns;
        size.ws_row = kUsualRows;
    }
    return size;
}

ChafaCanvasMode coloursOf(const ChafaTermInfo* terminal) {
    if (chafa_term_info_have_seq(terminal, CHAFA_TERM_SEQ_SET_COLOR_FGBG_DIRECT)) {
        return CHAFA_CANVAS_MODE_TRUECOLOR;
    }
    if (chafa_term_info_have_seq(terminal, CHAFA_TERM_SEQ_SET_COLOR_FGBG_256)) {
        return CHAFA_CANVAS_MODE_INDEXED_240;
    }
    return chafa_term_info_have_seq(terminal, CHAFA_TERM_SEQ_SET_COLOR_FGBG_16) ? CHAFA_CANVAS_MODE_INDEXED_16
                                                                                : CHAFA_CANVAS_MODE_FGBG;
}

Owned<ChafaCanvasConfig> configured(const secureworld::Bitmap& picture, const ChafaTermInfo* terminal) {
    const winsize size = terminalSize();
    int columns = size.ws_col;
    int rows = size.ws_row - 1;  // the prompt's row stays free
    chafa_calc_canvas_geometry(picture.size.width, picture.size.height, &columns, &rows, kUsualCellShape, TRUE, FALSE);
    Owned<ChafaCanvasConfig> config(chafa_canvas_config_new());
    chafa_canvas_config_set_geometry(config.get(), columns, rows);
    chafa_canvas_config_set_canvas_mode(config.get(), coloursOf(terminal));
    const Owned<ChafaSymbolMap> symbols(chafa_symbol_map_new());
    chafa_symbol_map_add_by_tags(
        symbols.get(),
        static_cast<ChafaSymbolTags>(CHAFA_SYMBOL_TAG_BLOCK | CHAFA_SYMBOL_TAG_BORDER | CHAFA_SYMBOL_TAG_SPACE));
    chafa_canvas_config_set_symbol_map(config.get(), symbols.get());
    return config;
}

}  // namespace

std::string terminalPreview(const secureworld::Bitmap& picture) {
    const Owned<gchar*> environment(g_get_environ());
    const Owned<ChafaTermInfo> terminal(chafa_term_db_detect(chafa_term_db_get_default(), environment.get()));
    const Owned<ChafaCanvasConfig> config = configured(picture, terminal.get());
    const Owned<ChafaCanvas> canvas(chafa_canvas_new(config.get()));
    chafa_canvas_draw_all_pixels(canvas.get(), kPixelType, reinterpret_cast<const guint8*>(picture.pixels.data()),
                                 picture.size.width, picture.size.height,
                                 static_cast<gint>(picture.stride() * sizeof(picture.pixels[0])));
    const Owned<GString> text(chafa_canvas_print(canvas.get(), terminal.get()));
    return std::string(text->str, text->len) + "\n";
}

}  // namespace vaultpad::tools
