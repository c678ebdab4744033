// Rendered images: into the table, and in batches to the trusted application.
#include <vaultpad-platform/trusted-core.h>
#include <vaultpad-platform/trusted-ui.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>

#include "communication/pixel-packing.h"
#include "communication/tee-client.h"
#include "log.h"

namespace vaultpad::communication {

namespace {

constexpr std::size_t kWordBytes = sizeof(std::uint32_t);

struct FreeBlock {
    void operator()(void* block) const { std::free(block); }
};
template <typename T>
using Buffer = std::unique_ptr<T[], FreeBlock>;

// Plain heap blocks: what a record holds is freed with free().
template <typename T>
Buffer<T> allocate(std::size_t bytes) {
    return Buffer<T>(static_cast<T*>(std::malloc(bytes)));
}

std::size_t pixelCount(const graphic::Object& object) {
    return static_cast<std::size_t>(object.width()) * static_cast<std::size_t>(object.height());
}

// An object that reaches beyond the canvas has pixels that nobody drew.
bool fits(const graphic::Object& object, const graphic::Canvas& canvas) {
    return object.width() >= 0 && object.height() >= 0 && object.width() <= canvas.width() &&
           object.height() <= canvas.height();
}

}  // namespace

bool TeeClient::isRotated() const {
    return (orientation_ & ~2) == VAULTPAD_TA_ORIENTATION_PORTRAIT;
}

std::int32_t TeeClient::loadImage(graphic::Canvas& canvas) {
    const std::shared_ptr<graphic::Object> object = canvas.object(0);
    if (!fits(*object, canvas)) {
        CA_LOG_ERROR("object %s of %d x %d exceeds the canvas of %d x %d", object->id().c_str(), object->width(),
                     object->height(), canvas.width(), canvas.height());
        return -1;
    }
    return isRotated() ? loadRotatedImage(canvas, *object) : loadPlainImage(canvas, *object);
}

std::int32_t TeeClient::loadPlainImage(const graphic::Canvas& canvas, const graphic::Object& object) {
    Buffer<std::uint8_t> packed = allocate<std::uint8_t>(pixelCount(object) * VAULTPAD_TA_BYTES_PER_PIXEL);
    if (!packed) {
        CA_LOG_ERROR("memory allocation fail;");
        return -1;
    }
    packCorner(canvas.buffer(), static_cast<std::size_t>(canvas.width()), static_cast<std::size_t>(object.width()),
               static_cast<std::size_t>(object.height()), packed.get());
    if (imageCount_ >= VAULTPAD_TA_IMAGE_COUNT_MAX) {
        return 0;
    }
    record(object, packed.release(), object.x(), object.y(), object.width(), object.height());
    return 0;
}

// Nothing when no number holds it: the sums are 64 bits wide, as a layout may place an object anywhere.
std::optional<TeeClient::Place> TeeClient::rotatedPlace(const graphic::Object& object, bool clockwise) const {
    const std::int64_t left = object.x();
    const std::int64_t top = object.y();
    // Clockwise adds the rotation width, which only the other direction sets and which is 0 here as a rule: intended.
    const std::int64_t x = clockwise ? rotationHeight_ - (top + object.height()) : top;
    const std::int64_t y = clockwise ? rotationWidth_ + left : rotationWidth_ - (left + object.width());
    if (std::min(x, y) < INT32_MIN || std::max(x, y) > INT32_MAX) {
        return std::nullopt;
    }
    return Place{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

// The image is turned and packed in one step, without the two work blocks that are asked for before: intended. A client
// that counts or refuses allocations sees the same ones as if the corner were copied, turned and then packed.
std::int32_t TeeClient::loadRotatedImage(const graphic::Canvas& canvas, const graphic::Object& object) {
    const bool clockwise = orientation_ == VAULTPAD_TA_ORIENTATION_PORTRAIT;
    const std::optional<Place> place = rotatedPlace(object, clockwise);
    if (!place) {
        CA_LOG_ERROR("object %s at %d, %d is too far away to be turned", object.id().c_str(), object.x(), object.y());
        return -1;
    }
    const auto width = static_cast<std::size_t>(object.width());
    const auto height = static_cast<std::size_t>(object.height());
    const Buffer<std::uint32_t> source = allocate<std::uint32_t>(width * height * kWordBytes);
    if (!source) {
        CA_LOG_ERROR("src memory allocation fail;");
        return -1;
    }
    const Buffer<std::uint32_t> turned = allocate<std::uint32_t>(width * height * kWordBytes);
    if (!turned) {
        CA_LOG_ERROR("memory allocation fail;");
        return -1;
    }
    Buffer<std::uint8_t> packed = allocate<std::uint8_t>(width * height * VAULTPAD_TA_BYTES_PER_PIXEL);
    if (!packed) {
        CA_LOG_ERROR("memory allocation fail;");
        return -1;
    }
    (clockwise ? packCornerClockwise : packCornerCounterClockwise)(
        canvas.buffer(), static_cast<std::size_t>(canvas.width()), width, height, packed.get());
    if (imageCount_ >= VAULTPAD_TA_IMAGE_COUNT_MAX) {
        return 0;
    }
    record(object, packed.release(), place->x, place->y, object.height(), object.width());
    return 0;
}

void TeeClient::record(const graphic::Object& object, std::uint8_t* pixels, std::int32_t x, std::int32_t y,
                       std::int32_t width, std::int32_t height) {
    // Composing the name takes memory, and may fail before the record owns the pixels.
    std::unique_ptr<std::uint8_t, FreeBlock> owned(pixels);
    std::ostringstream name;
    name << VAULTPAD_TA_IMAGE_NAME_PREFIX << object.id() << VAULTPAD_TA_IMAGE_NAME_SUFFIX;
    const std::string text = name.str();
    ImageRecord& image = images_[imageCount_];
    image = {};
    image.pixels = owned.release();
    std::copy_n(text.c_str(), std::min(text.size(), sizeof(image.name) - 1), image.name);
    image.x = x;
    image.y = y;
    image.width = width;
    image.height = height;
    image.size = static_cast<std::uint32_t>(width) * static_cast<std::uint32_t>(height) * VAULTPAD_TA_BYTES_PER_PIXEL;
    image.sent = false;
    ++imageCount_;
}

std::int32_t TeeClient::init_render_context() {
    CA_LOG_INFO("called;");
    void* block = nullptr;
    try {
        uploadTuiDescription(&block);
    } catch (const std::exception& error) {
        CA_LOG_ERROR("%s;", error.what());
        if (block != nullptr) {
            tzfw_core_release_shared_memory(context_, block);
        }
        return -1;
    }
    tzfw_core_release_shared_memory(context_, block);
    return 0;
}

void TeeClient::uploadTuiDescription(void** block) {
    int error = 0;
    // A handle of an earlier call is overwritten and not released: intended.
    tuiContext_ = tzfw_tui_create_context(&error);
    if (error != 0) {
        throw std::runtime_error("tzfw_tui_create_context fail;");
    }
    const void* description = tzfw_tui_get_gp_info(tuiContext_);
    if (description == nullptr) {
        throw std::runtime_error("tzfw_tui_get_gp_info");
    }
    *block = tzfw_core_create_shared_memory(context_, VAULTPAD_TRUSTED_MEMORY_TYPE, VAULTPAD_TA_BLOCK_RENDER_CONTEXT,
                                            VAULTPAD_TRUSTED_MEMORY_IN, VAULTPAD_TRUSTED_MEMORY_OUT);
    if (*block == nullptr) {
        throw std::runtime_error("tzfw_core_create_shared_memory fail;");
    }
    const std::uint32_t size = tzfw_tui_get_gp_info_size();
    if (tzfw_core_write_uint(context_, *block, size) != 0) {
        throw std::runtime_error("tzfw_core_write_uint fail;");
    }
    if (tzfw_core_write_blob(context_, *block, description, size) != 0) {
        throw std::runtime_error("tzfw_core_write_blob fail;");
    }
    if (tzfw_core_invoke_event(context_, VAULTPAD_TA_EVENT_RENDER_CONTEXT) != 0) {
        throw std::runtime_error("tzfw_core_invoke_event fail;");
    }
}

// How many unsent images, in order, fit the budget of one batch. An image that alone exceeds it is never chosen, and
// nor is any image after it: the upload then ends as if complete, which is intended.
std::uint32_t TeeClient::chooseBatch() const {
    std::uint64_t total = 0;
    std::uint32_t count = 0;
    for (std::int32_t i = 0; i < imageCount_; ++i) {
        if (images_[i].sent) {
            continue;
        }
        total += std::uint64_t{images_[i].size} + VAULTPAD_TA_IMAGE_RECORD_OVERHEAD;
        if (total > VAULTPAD_TA_IMAGE_BATCH_BUDGET) {
            break;
        }
        ++count;
    }
    return count;
}

std::int32_t TeeClient::send_image_data() {
    const std::uint32_t batch = chooseBatch();
    if (batch == 0) {
        return 1;
    }
    void* block = createBlock(VAULTPAD_TA_BLOCK_IMAGE_DATA);
    if (block == nullptr || !writeUint(block, batch)) {
        return -1;
    }
    CA_LOG_INFO("[TUI NWD] before send_image_really with cnt = %u", batch);
    std::uint32_t written = 0;
    for (std::int32_t i = 0; i < imageCount_ && written < batch; ++i) {
        if (images_[i].sent) {
            continue;
        }
        if (!writeImage(block, images_[i])) {
            return -1;
        }
        ++written;
    }
    if (!invoke(VAULTPAD_TA_EVENT_IMAGE_DATA)) {
        return -1;
    }
    tzfw_core_release_shared_memory(context_, block);
    return 0;
}

// Marks the image sent before it is written: a failing one is not tried again.
bool TeeClient::writeImage(void* block, ImageRecord& image) {
    image.sent = true;
    if (tzfw_core_write_string(context_, block, image.name) != 0) {
        CA_LOG_ERROR("%s / tzfw_core_write_string() fail", image.name);
        return false;
    }
    const std::int32_t words[] = {image.width, image.height, image.x, image.y, static_cast<std::int32_t>(image.size)};
    for (const std::int32_t word : words) {
        if (tzfw_core_write_uint(context_, block, static_cast<std::uint32_t>(word)) != 0) {
            CA_LOG_ERROR("%s / tzfw_core_write_uint() fail", image.name);
            return false;
        }
    }
    if (tzfw_core_write_blob(context_, block, image.pixels, image.size) != 0) {
        CA_LOG_ERROR("%s / tzfw_core_write_blob() fail", image.name);
        return false;
    }
    std::free(image.pixels);
    image.pixels = nullptr;
    return true;
}

}  // namespace vaultpad::communication
