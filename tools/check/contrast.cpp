#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <unordered_map>

#include "check/rules.h"
#include "communication/pixel-packing.h"
#include "display/composer.h"
#include "pad/focus.h"
#include "pad/turn.h"

namespace vaultpad::tools {

namespace {

using secureworld::Bitmap;
using secureworld::ImageKind;
using secureworld::Rect;

// What the high-contrast layouts promise: text against its key as enhanced contrast asks, and a focused key that stands
// out from its neighbours as any part of a user interface has to.
constexpr double kTextContrast = 7.0;
constexpr double kFocusContrast = 3.0;

// Relative luminance of an sRGB colour, 0 to 1.
double luminance(std::uint32_t colour) {
    const auto linear = [colour](unsigned shift) {
        const double value = static_cast<double>(colour >> shift & 0xff) / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

double contrast(std::uint32_t a, std::uint32_t b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

// The colour as it arrives on the secure display.
std::uint32_t asShown(std::uint32_t colour) {
    std::array<std::uint8_t, 3> packed{};
    communication::packCorner(&colour, 1, 1, 1, packed.data());
    return secureworld::unpack(packed.data(), {1, 1}, secureworld::Turn::None).pixels.front();
}

// The colour that most pixels in a part of the picture have.
std::uint32_t mainColour(const Bitmap& picture, const Rect& part) {
    const Rect seen = secureworld::intersected(part, {0, 0, picture.size.width, picture.size.height});
    std::unordered_map<std::uint32_t, std::size_t> counts;
    for (int y = seen.y; y < seen.bottom(); ++y) {
        for (int x = seen.x; x < seen.right(); ++x) {
            ++counts[picture.row(y)[x]];
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) {
        return std::pair(a.second, a.first) < std::pair(b.second, b.first);
    });
    return most == counts.end() ? secureworld::kBackdrop : most->first;
}

using Pictures = std::unordered_map<const CheckedObject*, Bitmap>;

// An object's image over what the pad shows behind it.
Bitmap asSeen(const CheckedObject& object, const std::vector<CheckedObject>& objects, const Pictures& pictures) {
    const Rect& place = object.image->place;
    Bitmap seen({place.width, place.height}, secureworld::kBackdrop);
    for (const ImageKind kind : {ImageKind::Background, ImageKind::Input}) {
        for (const CheckedObject& other : objects) {
            if (other.id.kind == kind && kind < object.id.kind && sharePage(other.id, object.id)) {
                draw(&seen, {{&pictures.at(&other), other.image->place.x - place.x, other.image->place.y - place.y}});
            }
        }
    }
    draw(&seen, {{&pictures.at(&object), 0, 0}});
    return seen;
}

std::uint32_t faceOf(const Bitmap& picture) {
    return mainColour(picture, {0, 0, picture.size.width, picture.size.height});
}

std::string ratio(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f:1", value);
    return text.data();
}

std::string shortfall(double is, double needed) {
    return ratio(is) + " instead of " + ratio(needed);
}

void checkTexts(const CheckedObject& object, const Bitmap& picture, Findings* findings) {
    const std::vector<const xmlNode*> tree = wholeTree(*object.source);
    for (const DrawnText& text : object.image->texts) {
        const double is = contrast(asShown(text.colour), mainColour(picture, text.box));
        if (is < kTextContrast) {
            findings->add(lineOf(*tree[text.position]), "contrast",
                          "the text of '" + object.image->id + "' has " + shortfall(is, kTextContrast) +
                              " against what is behind it",
                          "change the font's colour or the image");
        }
    }
}

std::vector<const CheckedObject*> keysOf(const std::vector<CheckedObject>& objects, bool focused) {
    std::vector<const CheckedObject*> keys;
    for (const CheckedObject& object : objects) {
        if (object.id.kind == ImageKind::Key && object.id.focused == focused) {
            keys.push_back(&object);
        }
    }
    return keys;
}

// The keys that are next to a key in the directions of the four arrows, on any page.
std::vector<const CheckedObject*> neighboursOf(const CheckedObject& key,
                                               const std::vector<const CheckedObject*>& normal) {
    std::vector<const CheckedObject*> others;
    std::vector<Rect> places;
    std::size_t self = 0;
    for (const CheckedObject* other : normal) {
        if (sharePage(key.id, other->id)) {
            self = areTwins(key.id, other->id) ? others.size() : self;
            others.push_back(other);
            places.push_back(other->image->place);
        }
    }
    std::vector<const CheckedObject*> result;
    for (const auto arrow : {secureworld::Direction::Up, secureworld::Direction::Down, secureworld::Direction::Left,
                             secureworld::Direction::Right}) {
        if (const auto next = secureworld::nextKey(places, self, arrow)) {
            result.push_back(others[*next]);
        }
    }
    return result;
}

using Faces = std::unordered_map<const CheckedObject*, std::uint32_t>;

void checkFocus(const std::vector<CheckedObject>& objects, const Faces& faces, Findings* findings) {
    const std::vector<const CheckedObject*> normal = keysOf(objects, false);
    for (const CheckedObject* key : keysOf(objects, true)) {
        for (const CheckedObject* neighbour : neighboursOf(*key, normal)) {
            const double is = contrast(faces.at(key), faces.at(neighbour));
            if (is < kFocusContrast) {
                findings->add(lineOf(*key->source), "contrast",
                              "'" + key->image->id + "' has " + shortfall(is, kFocusContrast) +
                                  " against its neighbour '" + neighbour->image->id + "'",
                              "give focused keys a face that stands out");
                break;
            }
        }
    }
}

}  // namespace

void checkContrast(const std::vector<CheckedObject>& objects, Findings* findings) {
    Pictures pictures;
    for (const CheckedObject& object : objects) {
        pictures[&object] = unpacked(*object.image, VAULTPAD_TA_ORIENTATION_LANDSCAPE);
    }
    Faces faces;
    for (const CheckedObject& object : objects) {
        const Bitmap picture = asSeen(object, objects, pictures);
        checkTexts(object, picture, findings);
        faces[&object] = faceOf(picture);
    }
    checkFocus(objects, faces, findings);
}

}  // namespace vaultpad::tools
