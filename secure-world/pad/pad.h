// A pad as its images describe it: pages, keys, what is drawn where. Does not change while it is used.
#ifndef VAULTPAD_SECURE_WORLD_PAD_PAD_H
#define VAULTPAD_SECURE_WORLD_PAD_PAD_H

#include <cstddef>
#include <string>
#include <vector>

#include "pad/geometry.h"
#include "pad/image-id.h"
#include "pad/key-action.h"

namespace vaultpad::secureworld {

// An image that the pad is made of. Its place in the list is the number that a Drawing names it by.
struct PadImage {
    std::string id;
    Rect place;  // as the viewer sees it
};

struct Drawing {
    std::size_t image;
    Rect place;
};

struct PadKey {
    std::string page;  // empty: on every page
    Rect place;
    std::size_t normalImage;
    std::size_t focusImage;
    KeyAction action;
};

struct PadRules {
    bool digitsOnly = false;   // a PIN pad
    bool rightToLeft = false;  // the dots grow to the left
};

class Pad {
public:
    // remarks receives one line for each image that cannot be used, with the reason; may not be null.
    Pad(const std::vector<PadImage>& images, const PadRules& rules, std::vector<std::string>* remarks);

    // The page that the pad opens on; empty for a pad without pages.
    const std::string& startPage() const { return startPage_; }
    bool hasPage(const std::string& page) const;

    // The keys of a page, those of every page included.
    const std::vector<PadKey>& keys() const { return keys_; }
    std::vector<std::size_t> keysOn(const std::string& page) const;

    // The rectangle that the whole pad takes: its backgrounds, or all of its images when it has none.
    const Rect& area() const { return area_; }

    // What is to be drawn for a page, first to last. focusedKey is an index into keys() or kNoKey; dots is the number
    // of typed characters.
    static constexpr std::size_t kNoKey = static_cast<std::size_t>(-1);
    std::vector<Drawing> drawings(const std::string& page, std::size_t focusedKey, std::size_t dots) const;

private:
    struct Still {
        ImageId id;
        Drawing drawing;
    };

    void addKeys(const std::vector<PadImage>& images, const std::vector<ImageId>& ids,
                 const std::vector<std::size_t>& keyImages, std::vector<std::string>* remarks);
    const Still* find(ImageKind kind, const std::string& page) const;
    void addDots(const std::string& page, std::size_t count, std::vector<Drawing>* drawings) const;

    PadRules rules_;
    std::vector<Still> stills_;  // everything but the keys, in drawing order
    std::vector<PadKey> keys_;
    std::vector<std::string> pages_;
    std::string startPage_;
    Rect area_;
};

}  // namespace vaultpad::secureworld

#endif
