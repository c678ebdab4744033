#include "gallery/shared-images.h"

#include <array>
#include <cstring>

namespace vaultpad::tools {

namespace {

// The same program wrote the numbers a moment ago: no other order of bytes can occur.
void append(std::size_t number, std::string& bytes) {
    std::array<char, sizeof(number)> raw{};
    std::memcpy(raw.data(), &number, raw.size());
    bytes.append(raw.data(), raw.size());
}

class Bytes {
public:
    explicit Bytes(const std::string& bytes) : bytes_(bytes) {}

    bool atEnd() const { return position_ >= bytes_.size(); }

    std::size_t number() {
        std::size_t result = 0;
        std::memcpy(&result, take(sizeof(result)), sizeof(result));
        return result;
    }

    int pixels() { return static_cast<int>(number()); }

    template <typename Container>
    void read(Container& container) {
        container.resize(number());
        std::memcpy(container.data(), take(container.size()), container.size());
    }

private:
    const char* take(std::size_t size) {
        const char* result = bytes_.data() + position_;
        position_ += size;
        return result;
    }

    const std::string& bytes_;
    std::size_t position_ = 0;
};

}  // namespace

std::string serialised(const std::vector<DrawnImage>& images) {
    std::string bytes;
    for (const DrawnImage& image : images) {
        append(image.id.size(), bytes);
        bytes += image.id;
        for (const int value : {image.place.x, image.place.y, image.place.width, image.place.height}) {
            append(static_cast<std::size_t>(value), bytes);
        }
        append(image.packed.size(), bytes);
        bytes.append(reinterpret_cast<const char*>(image.packed.data()), image.packed.size());
    }
    return bytes;
}

std::vector<DrawnImage> imagesFrom(const std::string& bytes) {
    std::vector<DrawnImage> images;
    Bytes rest(bytes);
    while (!rest.atEnd()) {
        DrawnImage image;
        rest.read(image.id);
        image.place = {rest.pixels(), rest.pixels(), rest.pixels(), rest.pixels()};
        rest.read(image.packed);
        images.push_back(std::move(image));
    }
    return images;
}

}  // namespace vaultpad::tools
