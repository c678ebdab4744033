#include "sample-pads.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <stdexcept>

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr int kColumns = 3;
constexpr int kKeyWidth = 20;
constexpr int kKeyHeight = 10;
constexpr int kGap = 4;
constexpr int kKeysTop = 30;
constexpr int kDot = 8;

std::uint32_t keyCode(char key) {
    switch (key) {
        case 'u':
            return VAULTPAD_TA_KEY_UP;
        case 'd':
            return VAULTPAD_TA_KEY_DOWN;
        case 'l':
            return VAULTPAD_TA_KEY_LEFT;
        case 'r':
            return VAULTPAD_TA_KEY_RIGHT;
        case '!':
            return VAULTPAD_TA_KEY_RETURN;
        default:
            throw std::runtime_error("no such key");
    }
}

Bytes madeUpPixels(const SampleImage& image) {
    const auto shade = static_cast<std::uint8_t>(image.id.size() * 7);
    Bytes result;
    for (int i = 0; i < image.place.width * image.place.height; ++i) {
        const Bytes pixel = packedPixel(0xff, shade, static_cast<std::uint8_t>(i), 0x40);
        result.insert(result.end(), pixel.begin(), pixel.end());
    }
    return result;
}

Bytes flat(int pixels, std::uint8_t alpha, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    Bytes result;
    for (int i = 0; i < pixels; ++i) {
        const Bytes pixel = packedPixel(alpha, red, green, blue);
        result.insert(result.end(), pixel.begin(), pixel.end());
    }
    return result;
}

}  // namespace

Bytes packedPixel(std::uint8_t alpha, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    const std::uint32_t value = static_cast<std::uint32_t>(alpha >> 2) << 18 |
                                static_cast<std::uint32_t>(red >> 2) << 12 |
                                static_cast<std::uint32_t>(green >> 2) << 6 | static_cast<std::uint32_t>(blue >> 2);
    return {static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 8 & 0xff),
            static_cast<std::uint8_t>(value & 0xff)};
}

std::vector<SampleImage> pinPad() {
    const std::array<const char*, 15> keys = {"1", "2",     "3", "4",         "5",      "6",   "7",     "8",
                                              "9", "Clear", "0", "BackSpace", "Cancel", "Tab", "Return"};
    std::vector<SampleImage> result = {{"background", {0, 0, 76, 104}, {}},
                                       {"input", {4, 4, 4 * kDot + 3, 14}, {}},
                                       {"mask", {5, 7, kDot, kDot}, {}},
                                       {"label.title", {50, 4, 20, 14}, {}}};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const int column = static_cast<int>(i) % kColumns;
        const int row = static_cast<int>(i) / kColumns;
        const Rect place = {kGap + column * (kKeyWidth + kGap), kKeysTop + row * (kKeyHeight + kGap), kKeyWidth,
                            kKeyHeight};
        const std::string stem = std::string("key.") + keys[i];
        result.push_back({stem + ".normal", place, {}});
        result.push_back({stem + ".focus", place, {}});
    }
    return result;
}

std::vector<SampleImage> tinyPad() {
    Bytes halfRed = flat(1, 255, 255, 0, 0);
    const Bytes clear = flat(1, 0, 0, 0, 0);
    halfRed.insert(halfRed.end(), clear.begin(), clear.end());
    return {{"background", {0, 0, 6, 3}, flat(18, 255, 0x82, 0x82, 0x82)},
            {"input", {0, 0, 2, 1}, flat(2, 0x82, 0, 0, 0)},
            {"mask", {0, 0, 1, 1}, flat(1, 255, 255, 255, 255)},
            {"key.1.normal", {0, 2, 2, 1}, flat(2, 255, 0, 0, 255)},
            {"key.1.focus", {0, 2, 2, 1}, flat(2, 255, 255, 0, 0)},
            {"key.2.normal", {4, 2, 2, 1}, flat(2, 255, 0, 255, 0)},
            {"key.2.focus", {4, 2, 2, 1}, halfRed}};
}

std::vector<PadImage> padImages(const std::vector<SampleImage>& images) {
    std::vector<PadImage> result;
    for (const SampleImage& image : images) {
        result.push_back({image.id, image.place});
    }
    return result;
}

Bytes typeRequest(const TypeRequest& type) {
    return Writer()
        .word(type.type)
        .word(type.extra)
        .word(type.enlarge)
        .word(type.highContrast)
        .word(type.reverse)
        .word(type.orientation)
        .word(type.baseX)
        .word(type.baseY)
        .bytes();
}

Bytes renderContextRequest() {
    const VaultPadTuiDescription description = {VAULTPAD_TUI_MAGIC, VAULTPAD_TUI_VERSION, 1920, 1080,
                                                VAULTPAD_TUI_ARGB6666};
    Bytes blob(sizeof(description));
    std::memcpy(blob.data(), &description, sizeof(description));
    return Writer().word(sizeof(description)).blob(blob).bytes();
}

Bytes imagesRequest(const std::vector<SampleImage>& images) {
    Writer writer;
    writer.word(static_cast<std::uint32_t>(images.size()));
    for (const SampleImage& image : images) {
        const Bytes pixels = image.pixels.empty() ? madeUpPixels(image) : image.pixels;
        writer.string("/root/" + image.id + ".ppm")
            .word(static_cast<std::uint32_t>(image.place.width))
            .word(static_cast<std::uint32_t>(image.place.height))
            .word(static_cast<std::uint32_t>(image.place.x))
            .word(static_cast<std::uint32_t>(image.place.y))
            .word(static_cast<std::uint32_t>(pixels.size()))
            .blob(pixels);
    }
    return writer.bytes();
}

RequestBytes requestOf(const Bytes& bytes) {
    const std::shared_ptr<std::uint8_t[]> copy(new std::uint8_t[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return {copy, bytes.size()};
}

void preparePad(TaClient* client, const std::vector<SampleImage>& images, const TypeRequest& type) {
    ASSERT_EQ(0, client->open()) << client->log();
    ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest(type))) << client->log();
    ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest())) << client->log();
    ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(images))) << client->log();
    ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IMAGE_DONE)) << client->log();
}

void showPad(TaClient* client, const std::vector<SampleImage>& images, const TypeRequest& type) {
    ASSERT_NO_FATAL_FAILURE(preparePad(client, images, type));
    ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_SHOW)) << client->log();
}

KeyAnswer press(TaClient* client, const std::string& keys) {
    KeyAnswer answer;
    for (const char key : keys) {
        answer = client->key(keyCode(key));
        EXPECT_EQ(0, answer.result) << client->log();
    }
    return answer;
}

}  // namespace vaultpad::secureworld
