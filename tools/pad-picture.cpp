#include "pad-picture.h"

#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <memory>
#include <set>
#include <stdexcept>

#include "display/display.h"
#include "display/screen.h"
#include "pad/focus.h"
#include "pad/image-id.h"
#include "pad/pad.h"
#include "session/pad-place.h"
#include "usage-error.h"

namespace vaultpad::tools {

namespace {

using secureworld::Bitmap;
using secureworld::Pad;
using secureworld::PadType;
using secureworld::Rect;

// A display whose picture is kept.
class KeptPicture : public secureworld::Display {
public:
    explicit KeptPicture(Bitmap* kept) : kept_(kept) {}

    void show(const secureworld::Picture& picture) override {
        *kept_ = Bitmap({picture.width, picture.height}, 0);
        for (int y = 0; y < picture.height; ++y) {
            std::copy_n(picture.pixels + static_cast<std::size_t>(y) * picture.stride, picture.width, kept_->row(y));
        }
    }

private:
    Bitmap* kept_;
};

Pad padOf(const std::vector<DrawnImage>& images, const PadType& type) {
    const Rect area = secureworld::expectedArea(type);
    std::vector<secureworld::PadImage> padImages;
    for (const DrawnImage& image : images) {
        Rect place = image.place;
        place.x += area.x;
        place.y += area.y;
        padImages.push_back({image.id, place});
    }
    std::vector<std::string> remarks;
    return Pad(padImages, {type.type == VAULTPAD_TA_IME_PINPAD, type.rightToLeft}, &remarks);
}

std::string choices(const std::set<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text.empty() ? "none" : text;
}

std::string pageOf(const Pad& pad, const std::vector<DrawnImage>& images, const std::string& wanted) {
    if (wanted.empty() || pad.hasPage(wanted)) {
        return wanted.empty() ? pad.startPage() : wanted;
    }
    std::set<std::string> pages;
    for (const DrawnImage& image : images) {
        const auto id = secureworld::parseImageId(image.id);
        if (id && !id->page.empty()) {
            pages.insert(id->page);
        }
    }
    throw UsageError("the layout has no page '" + wanted + "'; its pages: " + choices(pages));
}

std::size_t focusOf(const Pad& pad, const std::vector<DrawnImage>& images, const std::string& page,
                    const std::string& keysym) {
    const std::vector<std::size_t> keys = pad.keysOn(page);
    std::vector<Rect> places;
    std::set<std::string> names;
    for (const std::size_t key : keys) {
        const auto id = secureworld::parseImageId(images[pad.keys()[key].normalImage].id);
        if (id->keysym == keysym) {
            return key;
        }
        names.insert(id->keysym);
        places.push_back(pad.keys()[key].place);
    }
    if (!keysym.empty()) {
        throw UsageError("the page has no key '" + keysym + "'; its keys: " + choices(names));
    }
    return keys.empty() ? Pad::kNoKey : keys[secureworld::readingOrder(places).front()];
}

}  // namespace

Bitmap composePad(const std::vector<DrawnImage>& images, const PadType& type, const PadState& state) {
    const Pad pad = padOf(images, type);
    const std::string page = pageOf(pad, images, state.page);
    const std::size_t focus = focusOf(pad, images, page, state.focus);
    std::vector<Bitmap> bitmaps(images.size());
    std::vector<secureworld::Layer> layers;
    for (const secureworld::Drawing& drawing : pad.drawings(page, focus, state.typed)) {
        Bitmap& bitmap = bitmaps[drawing.image];
        if (bitmap.pixels.empty()) {
            bitmap = unpacked(images[drawing.image], type.orientation);
        }
        layers.push_back({&bitmap, drawing.place.x, drawing.place.y});
    }
    Bitmap picture;
    secureworld::Screen screen(std::make_unique<KeptPicture>(&picture), secureworld::Screen::View::Pad);
    screen.setSize(secureworld::viewerScreen(type));
    screen.showPad(layers, pad.area());
    if (picture.pixels.empty()) {
        throw std::runtime_error("no part of the pad is on the screen; give its objects places within its area");
    }
    return picture;
}

}  // namespace vaultpad::tools
