// The secure screen: composes what is to be seen and hands it to the display.
#ifndef VAULTPAD_SECURE_WORLD_DISPLAY_SCREEN_H
#define VAULTPAD_SECURE_WORLD_DISPLAY_SCREEN_H

#include <cstdint>
#include <memory>
#include <vector>

#include "display/bitmap.h"
#include "display/composer.h"
#include "display/display.h"
#include "pad/geometry.h"

namespace vaultpad::secureworld {

class Screen {
public:
    enum class View { Pad, Whole };

    Screen(std::unique_ptr<Display> display, View view);

    // The viewer's upright screen; the backdrop alone is on it afterwards.
    void setSize(Size size);

    bool wantsPictures() const { return display_->wantsPictures(); }

    // Shows the layers; area is what a display with View::Pad shows of the screen. A picture that is equal to the one
    // on the display is not shown again. Throws std::runtime_error when the display fails.
    void showPad(const std::vector<Layer>& layers, const Rect& area);

    // Shows a loading bar in the middle of the area, where the pad will be. step counts from 1.
    void showLoadingBar(const Rect& area, unsigned step);

    void hide();

    int idleInterval() const { return display_->idleInterval(); }
    void idle() { display_->idle(); }
    bool closedByViewer() const { return display_->closedByViewer(); }

private:
    void present(const Rect& area);

    std::unique_ptr<Display> display_;
    View view_;
    Bitmap frame_;
    Bitmap shown_;  // the latest picture on the display, empty for none
};

}  // namespace vaultpad::secureworld

#endif
