#include <algorithm>

#include "check/rules.h"

namespace vaultpad::tools {

namespace {

using secureworld::ImageKind;
using secureworld::Rect;

std::string text(const Rect& place) {
    return std::to_string(place.width) + "x" + std::to_string(place.height) + " at " + std::to_string(place.x) + "," +
           std::to_string(place.y);
}

std::string named(const CheckedObject& object) {
    return "'" + object.image->id + "'";
}

void checkTwinPlace(const CheckedObject& object, const std::vector<CheckedObject>& objects, Findings* findings) {
    if (object.id.kind != ImageKind::Key || !object.id.focused) {
        return;
    }
    for (const CheckedObject& other : objects) {
        if (areTwins(object.id, other.id) && other.image->place != object.image->place) {
            findings->add(lineOf(*object.source), "twin",
                          named(object) + " is " + text(object.image->place) + ", its twin " + text(other.image->place),
                          "give both the same place and size");
        }
    }
}

// A key counts once, by its normal image.
bool takesPart(const CheckedObject& object) {
    return object.id.kind != ImageKind::Key || !object.id.focused;
}

void checkOverlaps(const std::vector<CheckedObject>& objects, Findings* findings) {
    for (auto one = objects.begin(); one != objects.end(); ++one) {
        for (auto other = objects.begin(); other != one; ++other) {
            if (one->id.kind == other->id.kind && takesPart(*one) && takesPart(*other) &&
                sharePage(one->id, other->id) &&
                !secureworld::intersected(one->image->place, other->image->place).empty()) {
                findings->add(lineOf(*one->source), "overlap", named(*one) + " covers a part of " + named(*other),
                              "move one of the two or make it smaller");
            }
        }
    }
}

void checkArea(const CheckedObject& object, secureworld::Size area, Findings* findings) {
    if (object.image->place.empty()) {
        findings->add(lineOf(*object.source), "area", named(object) + " has no size", "give it an image with pixels");
    } else if (!secureworld::contains({0, 0, area.width, area.height}, object.image->place)) {
        findings->add(lineOf(*object.source), "area",
                      named(object) + ", " + text(object.image->place) + ", leaves the area of " +
                          std::to_string(area.width) + "x" + std::to_string(area.height),
                      "move it into the area or make it smaller");
    }
}

void checkMask(const CheckedObject& mask, const std::vector<CheckedObject>& objects, Findings* findings) {
    const bool inField = std::any_of(objects.begin(), objects.end(), [&](const CheckedObject& object) {
        return object.id.kind == ImageKind::Input && sharePage(object.id, mask.id) &&
               secureworld::contains(object.image->place, mask.image->place);
    });
    if (!inField) {
        findings->add(lineOf(*mask.source), "mask", named(mask) + " is not within the input field: no dot is shown",
                      "place it where the first character's dot is to be");
    }
}

}  // namespace

void checkPlaces(const std::vector<CheckedObject>& objects, secureworld::Size area, Findings* findings) {
    for (const CheckedObject& object : objects) {
        checkTwinPlace(object, objects, findings);
        checkArea(object, area, findings);
        if (object.id.kind == ImageKind::Mask) {
            checkMask(object, objects, findings);
        }
    }
    checkOverlaps(objects, findings);
}

}  // namespace vaultpad::tools
