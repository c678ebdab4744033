#include "display/screen.h"

#include <algorithm>
#include <utility>

namespace vaultpad::secureworld {

namespace {

constexpr std::uint32_t kBarFrame = 0xff5a6470u;
constexpr std::uint32_t kBarDone = 0xff3d9be9u;
constexpr unsigned kBarSteps = 10;
constexpr int kBarHeight = 24;
constexpr int kBarEdge = 2;

Bitmap cut(const Bitmap& frame, const Rect& part) {
    Bitmap result({part.width, part.height}, 0);
    for (int y = 0; y < part.height; ++y) {
        std::copy_n(frame.row(part.y + y) + part.x, part.width, result.row(y));
    }
    return result;
}

}  // namespace

Screen::Screen(std::unique_ptr<Display> display, View view) : display_(std::move(display)), view_(view) {}

void Screen::setSize(Size size) {
    if (wantsPictures()) {
        frame_ = Bitmap(size, kBackdrop);
    }
}

void Screen::showPad(const std::vector<Layer>& layers, const Rect& area) {
    if (!wantsPictures()) {
        return;
    }
    fill(&frame_, {0, 0, frame_.size.width, frame_.size.height}, kBackdrop);
    draw(&frame_, layers);
    present(area);
}

void Screen::showLoadingBar(const Rect& area, unsigned step) {
    if (!wantsPictures()) {
        return;
    }
    const Rect bar = {area.x + area.width / 4, area.y + (area.height - kBarHeight) / 2, area.width / 2, kBarHeight};
    const Rect inner = {bar.x + kBarEdge, bar.y + kBarEdge, bar.width - 2 * kBarEdge, bar.height - 2 * kBarEdge};
    // How many steps there will be is not known: the bar starts over when it is full.
    const int done = static_cast<int>((step - 1) % kBarSteps + 1);
    fill(&frame_, {0, 0, frame_.size.width, frame_.size.height}, kBackdrop);
    fill(&frame_, bar, kBarFrame);
    fill(&frame_, inner, kBackdrop);
    fill(&frame_, {inner.x, inner.y, inner.width * done / static_cast<int>(kBarSteps), inner.height}, kBarDone);
    present(area);
}

void Screen::present(const Rect& area) {
    const Rect whole = {0, 0, frame_.size.width, frame_.size.height};
    const Rect part = view_ == View::Whole ? whole : intersected(area, whole);
    if (part.empty()) {
        return;
    }
    Bitmap picture = cut(frame_, part);
    if (picture.size == shown_.size && picture.pixels == shown_.pixels) {
        return;
    }
    display_->show({picture.pixels.data(), part.width, part.height, picture.stride()});
    shown_ = std::move(picture);
}

void Screen::hide() {
    shown_ = Bitmap();
    display_->hide();
}

}  // namespace vaultpad::secureworld
