// The images of a pad as they arrived.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_IMAGE_STORE_H
#define VAULTPAD_SECURE_WORLD_SESSION_IMAGE_STORE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pad/geometry.h"
#include "session/request-bytes.h"

namespace vaultpad::secureworld {

struct StoredImage {
    std::string name;    // as received
    std::string id;      // the name without prefix and suffix
    std::int32_t x = 0;  // as received: from the pad's origin
    std::int32_t y = 0;
    Rect panelPlace;      // on the secure display
    RequestBytes pixels;  // packed, exactly as received
};

class ImageStore {
public:
    const std::vector<StoredImage>& images() const { return images_; }
    bool empty() const { return images_.empty(); }

    // Takes a whole batch or nothing: throws Refusal when a name would be there twice or the store would exceed
    // VAULTPAD_TA_IMAGE_COUNT_MAX images or kBytesMax bytes.
    void add(std::vector<StoredImage> batch);

    // Bytes of pixels that one pad may have: the largest keyboard with all its pages takes a tenth of it.
    static constexpr std::size_t kBytesMax = std::size_t{256} * 1024 * 1024;

private:
    std::vector<StoredImage> images_;
    std::size_t bytes_ = 0;
};

}  // namespace vaultpad::secureworld

#endif
