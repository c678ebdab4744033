#include "pad/pad.h"

#include <algorithm>
#include <optional>

namespace vaultpad::secureworld {

namespace {

constexpr const char* kStartPage = "main";

bool isOn(const std::string& itemPage, const std::string& page) {
    return itemPage.empty() || itemPage == page;
}

bool isPartner(const ImageId& a, const ImageId& b) {
    return a.page == b.page && a.keysym == b.keysym && a.targetPage == b.targetPage && a.focused != b.focused;
}

}  // namespace

Pad::Pad(const std::vector<PadImage>& images, const PadRules& rules, std::vector<std::string>* remarks)
    : rules_(rules) {
    std::vector<ImageId> ids(images.size());
    std::vector<std::size_t> keyImages;
    Rect backgrounds;
    Rect everything;
    for (std::size_t i = 0; i < images.size(); ++i) {
        const std::optional<ImageId> id = parseImageId(images[i].id);
        if (!id) {
            remarks->push_back("image \"" + images[i].id + "\" is not drawn: no id that a pad knows");
            continue;
        }
        ids[i] = *id;
        if (!id->page.empty() && !hasPage(id->page)) {
            pages_.push_back(id->page);
        }
        everything = united(everything, images[i].place);
        if (id->kind == ImageKind::Key) {
            keyImages.push_back(i);
            continue;
        }
        if (id->kind == ImageKind::Background) {
            backgrounds = united(backgrounds, images[i].place);
        }
        stills_.push_back({*id, {i, images[i].place}});
    }
    std::stable_sort(stills_.begin(), stills_.end(),
                     [](const Still& a, const Still& b) { return a.id.kind < b.id.kind; });
    area_ = backgrounds.empty() ? everything : backgrounds;
    if (!pages_.empty()) {
        startPage_ = kStartPage;
        if (!hasPage(startPage_)) {
            remarks->push_back("the pad has pages, but none called \"main\" to open on");
        }
    }
    addKeys(images, ids, keyImages, remarks);
}

void Pad::addKeys(const std::vector<PadImage>& images, const std::vector<ImageId>& ids,
                  const std::vector<std::size_t>& keyImages, std::vector<std::string>* remarks) {
    for (const std::size_t i : keyImages) {
        const auto partner = std::find_if(keyImages.begin(), keyImages.end(),
                                          [&](std::size_t other) { return isPartner(ids[i], ids[other]); });
        if (partner == keyImages.end() || images[*partner].place != images[i].place) {
            remarks->push_back("image \"" + images[i].id +
                               "\" is not drawn: a key needs the images normal and focus in the same place");
            continue;
        }
        if (ids[i].focused) {
            continue;
        }
        if (!ids[i].targetPage.empty() && !hasPage(ids[i].targetPage)) {
            remarks->push_back("key \"" + images[i].id + "\" does nothing: no image is on the page it shows");
        }
        keys_.push_back({ids[i].page, images[i].place, i, *partner, actionOf(ids[i], rules_.digitsOnly)});
    }
}

bool Pad::hasPage(const std::string& page) const {
    return std::find(pages_.begin(), pages_.end(), page) != pages_.end();
}

std::vector<std::size_t> Pad::keysOn(const std::string& page) const {
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        if (isOn(keys_[i].page, page)) {
            result.push_back(i);
        }
    }
    return result;
}

// A page's own item goes before the one of every page.
const Pad::Still* Pad::find(ImageKind kind, const std::string& page) const {
    const Still* result = nullptr;
    for (const Still& still : stills_) {
        if (still.id.kind == kind && isOn(still.id.page, page) && (!result || result->id.page.empty())) {
            result = &still;
        }
    }
    return result;
}

void Pad::addDots(const std::string& page, std::size_t count, std::vector<Drawing>* drawings) const {
    const Still* mask = find(ImageKind::Mask, page);
    if (!mask) {
        return;
    }
    const Still* input = find(ImageKind::Input, page);
    const Rect field = input ? input->drawing.place : area_;
    Drawing dot = mask->drawing;
    for (std::size_t i = 0; i < count && contains(field, dot.place); ++i) {
        drawings->push_back(dot);
        dot.place.x += rules_.rightToLeft ? -dot.place.width : dot.place.width;
    }
}

std::vector<Drawing> Pad::drawings(const std::string& page, std::size_t focusedKey, std::size_t dots) const {
    std::vector<Drawing> result;
    for (const Still& still : stills_) {
        if (isOn(still.id.page, page) && still.id.kind != ImageKind::Mask) {
            result.push_back(still.drawing);
        }
    }
    for (const std::size_t i : keysOn(page)) {
        const PadKey& key = keys_[i];
        result.push_back({i == focusedKey ? key.focusImage : key.normalImage, key.place});
    }
    addDots(page, dots, &result);
    return result;
}

}  // namespace vaultpad::secureworld
