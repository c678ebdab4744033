// Display window: the secure display in a window of the desktop.
#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>

#include "display/display-module.h"

namespace vaultpad::secureworld {
namespace {

constexpr const char* kTitle = "Vault Pad (emulated secure display)";
constexpr int kIdleInterval = 40;      // ms between two looks at the window's events
constexpr double kLargestShare = 0.9;  // of the desktop
constexpr int kBitsPerPixel = 32;

struct Release {
    void operator()(SDL_Window* window) const { SDL_DestroyWindow(window); }
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

using Surface = std::unique_ptr<SDL_Surface, Release>;

[[noreturn]] void fail(const std::string& what) {
    throw std::runtime_error(what + ": " + SDL_GetError());
}

class WindowDisplay : public Display {
public:
    explicit WindowDisplay(const DisplaySettings&) {
        SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        SDL_SetHint(SDL_HINT_WINDOW_NO_ACTIVATION_WHEN_SHOWN, "1");  // keys belong to the client
        SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
        if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
            fail("no desktop to open a window on (is DISPLAY or WAYLAND_DISPLAY set?)");
        }
        SDL_EnableScreenSaver();
    }

    ~WindowDisplay() override {
        picture_.reset();
        window_.reset();
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
    }

    void show(const Picture& picture) override {
        keep(picture);
        if (!window_) {
            openWindow();
        }
        closed_ = false;
        paint();
    }

    void hide() override {
        window_.reset();
        picture_.reset();
    }

    int idleInterval() const override { return window_ ? kIdleInterval : -1; }

    void idle() override {
        SDL_Event event;
        while (SDL_PollEvent(&event) != 0) {
            if (event.type != SDL_WINDOWEVENT || !window_) {
                continue;
            }
            switch (event.window.event) {
                case SDL_WINDOWEVENT_CLOSE:
                    closed_ = true;
                    window_.reset();
                    break;
                case SDL_WINDOWEVENT_EXPOSED:
                case SDL_WINDOWEVENT_SIZE_CHANGED:
                    paint();
                    break;
                default:
                    break;
            }
        }
    }

    bool closedByViewer() const override { return closed_; }

private:
    void keep(const Picture& picture) {
        picture_.reset(
            SDL_CreateRGBSurfaceWithFormat(0, picture.width, picture.height, kBitsPerPixel, SDL_PIXELFORMAT_RGB888));
        if (!picture_) {
            fail("no memory for the picture");
        }
        for (int y = 0; y < picture.height; ++y) {
            auto* row = static_cast<char*>(picture_->pixels) + static_cast<std::ptrdiff_t>(y) * picture_->pitch;
            const std::uint32_t* source = picture.pixels + static_cast<std::size_t>(y) * picture.stride;
            std::copy_n(source, picture.width, reinterpret_cast<std::uint32_t*>(row));
        }
    }

    void openWindow() {
        int width = picture_->w;
        int height = picture_->h;
        SDL_Rect desktop = {};
        if (SDL_GetDisplayUsableBounds(0, &desktop) == 0 && desktop.w > 0 && desktop.h > 0) {
            const double scale = std::min({1.0, desktop.w * kLargestShare / width, desktop.h * kLargestShare / height});
            width = std::max(1, static_cast<int>(width * scale));
            height = std::max(1, static_cast<int>(height * scale));
        }
        window_.reset(SDL_CreateWindow(kTitle, SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height,
                                       SDL_WINDOW_RESIZABLE));
        if (!window_) {
            fail("no window");
        }
    }

    // The picture as large as it fits, at most in its own size, in the middle.
    void paint() {
        SDL_Surface* surface = SDL_GetWindowSurface(window_.get());
        if (!surface || !picture_) {
            return;
        }
        const double scale = std::min(
            {1.0, static_cast<double>(surface->w) / picture_->w, static_cast<double>(surface->h) / picture_->h});
        const int width = std::max(1, static_cast<int>(picture_->w * scale));
        const int height = std::max(1, static_cast<int>(picture_->h * scale));
        SDL_Rect place = {(surface->w - width) / 2, (surface->h - height) / 2, width, height};
        SDL_FillRect(surface, nullptr, SDL_MapRGB(surface->format, 0, 0, 0));
        drawOn(surface, &place);
        SDL_UpdateWindowSurface(window_.get());
    }

    void drawOn(SDL_Surface* surface, SDL_Rect* place) {
        if (place->w == picture_->w && place->h == picture_->h) {
            SDL_BlitSurface(picture_.get(), nullptr, surface, place);
            return;
        }
        // The smoothing stretch takes surfaces of one format only.
        const Surface same(SDL_ConvertSurface(picture_.get(), surface->format, 0));
        if (!same || SDL_SoftStretchLinear(same.get(), nullptr, surface, place) != 0) {
            SDL_BlitScaled(picture_.get(), nullptr, surface, place);
        }
    }

    std::unique_ptr<SDL_Window, Release> window_;
    Surface picture_;
    bool closed_ = false;
};

}  // namespace
}  // namespace vaultpad::secureworld

VAULTPAD_DISPLAY_MODULE(vaultpad::secureworld::WindowDisplay)
