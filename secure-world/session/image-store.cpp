#include "session/image-store.h"

#include <iterator>
#include <unordered_set>
#include <utility>

#include "session/refusal.h"
#include "session/text.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

void ImageStore::add(std::vector<StoredImage> batch) {
    if (images_.size() + batch.size() > VAULTPAD_TA_IMAGE_COUNT_MAX) {
        throw Refusal("more than " + std::to_string(VAULTPAD_TA_IMAGE_COUNT_MAX) + " images");
    }
    std::unordered_set<std::string> names;
    for (const StoredImage& image : images_) {
        names.insert(image.name);
    }
    std::size_t bytes = bytes_;
    for (const StoredImage& image : batch) {
        if (!names.insert(image.name).second) {
            throw Refusal("image " + printable(image.name) + " arrived before");
        }
        bytes += image.pixels.size;
    }
    if (bytes > kBytesMax) {
        throw Refusal("the images exceed " + std::to_string(kBytesMax) + " bytes");
    }
    images_.reserve(images_.size() + batch.size());
    std::move(batch.begin(), batch.end(), std::back_inserter(images_));
    bytes_ = bytes;
}

}  // namespace vaultpad::secureworld
