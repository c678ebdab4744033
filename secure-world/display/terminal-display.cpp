// Display terminal: the secure display drawn in place on the terminal that the client runs in.

#include <cstdlib>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include "display/chafa-handles.h"
#include "display/display-module.h"
#include "display/terminal.h"

namespace vaultpad::secureworld {
namespace {

constexpr int kMessageRows = 2;  // at the bottom, for the client
constexpr int kColumnsMin = 24;
constexpr int kRowsMin = 10 + kMessageRows;
constexpr float kUsualCellShape = 0.5F;  // width by height
constexpr const char* kHideCursor = "\x1b[?25l";
constexpr const char* kShowCursor = "\x1b[?25h";
constexpr const char* kSaveCursor =
    "\x1b"
    "7";
constexpr const char* kRestoreCursor =
    "\x1b"
    "8";
constexpr const char* kClear = "\x1b[2J";
constexpr const char* kHome = "\x1b[H";
constexpr const char* kScrollAll = "\x1b[r";
constexpr const char* kDeleteKittyImages = "\x1b_Ga=d\x1b\\";

std::string position(int row, int column) {
    return "\x1b[" + std::to_string(row) + ';' + std::to_string(column) + 'H';
}

bool isTooSmall(const TerminalSize& size) {
    return size.columns < kColumnsMin || size.rows < kRowsMin;
}

std::string tooSmall(const TerminalSize& size) {
    return "the terminal of " + std::to_string(size.columns) + " x " + std::to_string(size.rows) +
           " characters is smaller than " + std::to_string(kColumnsMin) + " x " + std::to_string(kRowsMin) +
           "; enlarge it or choose another display";
}

class TerminalDisplay : public Display {
public:
    explicit TerminalDisplay(const DisplaySettings&) {
        const char* kind = std::getenv("TERM");
        if (!kind || *kind == '\0' || std::string(kind) == "dumb") {
            throw std::runtime_error(
                "the terminal cannot show pictures (TERM is unset or dumb); choose another display");
        }
        if (isTooSmall(terminal_.size())) {
            throw std::runtime_error(tooSmall(terminal_.size()));
        }
        const std::unique_ptr<gchar*, Release> environment(g_get_environ());
        info_.reset(chafa_term_db_detect(chafa_term_db_get_default(), environment.get()));
    }

    ~TerminalDisplay() override {
        try {
            restore();
        } catch (const std::exception&) {
            // The terminal is gone: there is nothing to restore.
        }
    }

    void show(const Picture& picture) override {
        const TerminalSize size = terminal_.size();
        if (isTooSmall(size)) {
            throw std::runtime_error(tooSmall(size));
        }
        std::string text;
        if (!shown_ || size != size_) {
            text += prepared(size);
        }
        size_ = size;
        shown_ = true;
        terminal_.write(text + kSaveCursor + kHideCursor + drawn(picture) + kRestoreCursor);
    }

    void hide() override { restore(); }

private:
    void restore() {
        if (!shown_) {
            return;
        }
        shown_ = false;
        std::string text;
        if (pixelMode() == CHAFA_PIXEL_MODE_KITTY) {
            text += kDeleteKittyImages;
        }
        terminal_.write(text + kScrollAll + "\x1b[0m" + kClear + kHome + kShowCursor);
    }

    // An empty screen of which only the client's rows scroll, with the cursor there.
    static std::string prepared(const TerminalSize& size) {
        const int first = size.rows - kMessageRows + 1;
        return std::string("\x1b[0m") + kClear + "\x1b[" + std::to_string(first) + ';' + std::to_string(size.rows) +
               'r' + position(first, 1);
    }

    bool has(ChafaTermSeq sequence) const { return chafa_term_info_have_seq(info_.get(), sequence) != FALSE; }

    ChafaPixelMode pixelMode() const {
        if (has(CHAFA_TERM_SEQ_BEGIN_KITTY_IMMEDIATE_IMAGE_V1)) {
            return CHAFA_PIXEL_MODE_KITTY;
        }
        // Without a cell's size in pixels it is not known how many rows the picture would take.
        const bool cellKnown = size_.cellWidth > 0 && size_.cellHeight > 0;
        return has(CHAFA_TERM_SEQ_BEGIN_SIXELS) && cellKnown ? CHAFA_PIXEL_MODE_SIXELS : CHAFA_PIXEL_MODE_SYMBOLS;
    }

    ChafaCanvasMode colours() const {
        if (pixelMode() != CHAFA_PIXEL_MODE_SYMBOLS || has(CHAFA_TERM_SEQ_SET_COLOR_FGBG_DIRECT)) {
            return CHAFA_CANVAS_MODE_TRUECOLOR;
        }
        if (has(CHAFA_TERM_SEQ_SET_COLOR_FGBG_256)) {
            return CHAFA_CANVAS_MODE_INDEXED_240;
        }
        return has(CHAFA_TERM_SEQ_SET_COLOR_FGBG_16) ? CHAFA_CANVAS_MODE_INDEXED_16 : CHAFA_CANVAS_MODE_FGBG;
    }

    Owned<ChafaCanvasConfig> configured(const Picture& picture) const {
        const bool cellKnown = size_.cellWidth > 0 && size_.cellHeight > 0;
        const float shape =
            cellKnown ? static_cast<float>(size_.cellWidth) / static_cast<float>(size_.cellHeight) : kUsualCellShape;
        int columns = size_.columns;
        int rows = size_.rows - kMessageRows;
        chafa_calc_canvas_geometry(picture.width, picture.height, &columns, &rows, shape, TRUE, FALSE);
        Owned<ChafaCanvasConfig> config(chafa_canvas_config_new());
        chafa_canvas_config_set_geometry(config.get(), columns, rows);
        if (cellKnown) {
            chafa_canvas_config_set_cell_geometry(config.get(), size_.cellWidth, size_.cellHeight);
        }
        chafa_canvas_config_set_pixel_mode(config.get(), pixelMode());
        chafa_canvas_config_set_canvas_mode(config.get(), colours());
        const Owned<ChafaSymbolMap> symbols(chafa_symbol_map_new());
        chafa_symbol_map_add_by_tags(
            symbols.get(),
            static_cast<ChafaSymbolTags>(CHAFA_SYMBOL_TAG_BLOCK | CHAFA_SYMBOL_TAG_BORDER | CHAFA_SYMBOL_TAG_SPACE));
        chafa_canvas_config_set_symbol_map(config.get(), symbols.get());
        return config;
    }

    std::string drawn(const Picture& picture) const {
        const Owned<ChafaCanvasConfig> config = configured(picture);
        const Owned<ChafaCanvas> canvas(chafa_canvas_new(config.get()));
        chafa_canvas_draw_all_pixels(canvas.get(), kPixelType, reinterpret_cast<const guint8*>(picture.pixels),
                                     picture.width, picture.height,
                                     static_cast<gint>(picture.stride * sizeof(*picture.pixels)));
        const Owned<GString> output(chafa_canvas_print(canvas.get(), info_.get()));
        const std::string text(output->str, output->len);
        if (pixelMode() == CHAFA_PIXEL_MODE_KITTY) {
            return kDeleteKittyImages + (kHome + text);
        }
        return pixelMode() == CHAFA_PIXEL_MODE_SIXELS ? kHome + text : placed(text);
    }

    // Each row goes to its place by itself: a client that reads single keys may have turned line feeds into just that.
    static std::string placed(const std::string& text) {
        std::istringstream rows(text);
        std::string result;
        std::string row;
        for (int number = 1; std::getline(rows, row); ++number) {
            result += position(number, 1) + row;
        }
        return result + "\x1b[0m";
    }

    Terminal terminal_;
    Owned<ChafaTermInfo> info_;
    TerminalSize size_;
    bool shown_ = false;
};

}  // namespace
}  // namespace vaultpad::secureworld

VAULTPAD_DISPLAY_MODULE(vaultpad::secureworld::TerminalDisplay)
