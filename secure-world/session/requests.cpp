#include "session/requests.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/host/secure-channel-wire.h"
#include "session/reader.h"
#include "session/refusal.h"
#include "session/text.h"
#include "vaultpad/ta-protocol.h"
#include "voice/inflation.h"
#include "voice/wave-file.h"

namespace vaultpad::secureworld {

namespace {

constexpr Rect kScreen = {0, 0, VAULTPAD_TA_SCREEN_WIDTH, VAULTPAD_TA_SCREEN_HEIGHT};

void checkRange(const char* what, std::int64_t value, std::int64_t lowest, std::int64_t highest) {
    if (value < lowest || value > highest) {
        throw Refusal(std::string(what) + " is " + std::to_string(value) + " instead of " + std::to_string(lowest) +
                      " to " + std::to_string(highest));
    }
}

std::string idOf(std::string_view name) {
    constexpr std::string_view kPrefix = VAULTPAD_TA_IMAGE_NAME_PREFIX;
    constexpr std::string_view kSuffix = VAULTPAD_TA_IMAGE_NAME_SUFFIX;
    if (name.size() < kPrefix.size() + kSuffix.size() || name.substr(0, kPrefix.size()) != kPrefix ||
        name.substr(name.size() - kSuffix.size()) != kSuffix) {
        throw Refusal("image name " + printable(name) + " is not /root/<id>.ppm");
    }
    return std::string(name.substr(kPrefix.size(), name.size() - kPrefix.size() - kSuffix.size()));
}

// In 64 bits throughout, so that no sum or product of the client's words can wrap around.
StoredImage readImage(Reader* reader, const PadType& type) {
    const std::string_view name = reader->string("image name", VAULTPAD_TA_IMAGE_NAME_SIZE - 1);
    StoredImage image;
    image.name = std::string(name);
    image.id = idOf(name);
    const std::int64_t width = reader->word("image width");
    const std::int64_t height = reader->word("image height");
    image.x = reader->number("image x");
    image.y = reader->number("image y");
    const std::int64_t size = reader->word("image size");
    checkRange("image width", width, 1, kScreen.width);
    checkRange("image height", height, 1, kScreen.height);
    if (size != width * height * VAULTPAD_TA_BYTES_PER_PIXEL) {
        throw Refusal("image " + printable(name) + " of " + std::to_string(width) + " x " + std::to_string(height) +
                      " pixels has " + std::to_string(size) + " bytes");
    }
    const std::int64_t left = std::int64_t{type.baseX} + image.x;
    const std::int64_t top = std::int64_t{type.baseY} + image.y;
    if (left < 0 || top < 0 || left + width > kScreen.width || top + height > kScreen.height) {
        throw Refusal("image " + printable(name) + " lies beyond the screen");
    }
    image.panelPlace = {static_cast<int>(left), static_cast<int>(top), static_cast<int>(width),
                        static_cast<int>(height)};
    image.pixels = reader->blob("image pixels", static_cast<std::size_t>(size));
    return image;
}

VoiceClip readVoiceClip(Reader* reader) {
    VoiceClip clip;
    clip.id = std::string(reader->string("clip id", VoiceClips::kIdLengthMax));
    const std::uint32_t compressed = reader->word("compressed size");
    const std::uint32_t size = reader->word("uncompressed size");
    const RequestBytes data = reader->blob("clip", compressed);
    if (clip.id.empty() || compressed == 0) {
        throw Refusal("a clip has no id or no data");
    }
    checkRange("uncompressed size", size, 0, VoiceClips::kSoundSizeMax);
    clip.sound = std::make_shared<const Sound>(inflated(data, size));
    checkWaveFile(*clip.sound);
    return clip;
}

}  // namespace

PadType readPadType(const RequestBytes& request) {
    Reader reader(request);
    PadType result;
    result.type = reader.word("pad type");
    checkRange("pad type", result.type, VAULTPAD_TA_IME_PINPAD, VAULTPAD_TA_IME_KEYBOARD);
    const std::int32_t extra = reader.number("extra");
    if (result.type == VAULTPAD_TA_IME_PINPAD && extra > 0) {
        checkRange("number of digits", extra, 1, VAULTPAD_TA_TEXT_MAX);
        result.completeAt = static_cast<std::uint32_t>(extra);
    }
    result.enlarged = reader.word("enlarge") != 0;
    reader.word("high contrast");  // already in the images
    result.rightToLeft = reader.word("reverse") != 0;
    result.orientation = reader.word("orientation");
    if (result.orientation != VAULTPAD_TA_ORIENTATION_LANDSCAPE &&
        result.orientation != VAULTPAD_TA_ORIENTATION_PORTRAIT &&
        result.orientation != VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED) {
        throw Refusal("orientation is " + std::to_string(result.orientation) + " instead of 0, 1 or 3");
    }
    result.baseX = reader.number("origin x");
    result.baseY = reader.number("origin y");
    checkRange("origin x", result.baseX, 0, kScreen.width - 1);
    checkRange("origin y", result.baseY, 0, kScreen.height - 1);
    reader.end();
    return result;
}

void checkRenderContext(const RequestBytes& request) {
    Reader reader(request);
    const std::size_t size = reader.word("size of the description");
    const RequestBytes blob = reader.blob("description", size);
    reader.end();
    VaultPadTuiDescription description = {};
    if (size != sizeof(description)) {
        throw Refusal("the trusted-UI description has " + std::to_string(size) + " bytes instead of " +
                      std::to_string(sizeof(description)));
    }
    std::memcpy(&description, blob.begin(), sizeof(description));
    if (description.magic != VAULTPAD_TUI_MAGIC || description.version != VAULTPAD_TUI_VERSION) {
        throw Refusal("the trusted-UI description is of another kind or version");
    }
    if (description.width != VAULTPAD_TA_SCREEN_WIDTH || description.height != VAULTPAD_TA_SCREEN_HEIGHT ||
        description.pixel_format != VAULTPAD_TUI_ARGB6666) {
        throw Refusal("the trusted-UI description is of another screen");
    }
}

std::vector<StoredImage> readImages(const RequestBytes& request, const PadType& type) {
    Reader reader(request);
    const std::uint32_t count = reader.word("image count");
    checkRange("image count", count, 0, VAULTPAD_TA_IMAGE_COUNT_MAX);
    std::vector<StoredImage> result;
    result.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        result.push_back(readImage(&reader, type));
    }
    reader.end();
    return result;
}

std::vector<VoiceClip> readVoiceClips(const RequestBytes& request) {
    Reader reader(request);
    const std::uint32_t count = reader.word("clip count");
    checkRange("clip count", count, 0, VAULTPAD_TA_VOICE_BATCH_CLIPS);
    std::vector<VoiceClip> result;
    for (std::uint32_t i = 0; i < count; ++i) {
        result.push_back(readVoiceClip(&reader));
    }
    reader.end();
    return result;
}

PublicKey readPublicKey(const RequestBytes& request) {
    Reader reader(request);
    reader.word("first argument");
    reader.word("second argument");
    const std::uint32_t modulusSize = reader.word("modulus size");
    const std::uint32_t exponentSize = reader.word("exponent size");
    const RequestBytes modulus = reader.blob("modulus", modulusSize);
    const RequestBytes exponent = reader.blob("exponent", exponentSize);
    const std::uint32_t prefixSize = reader.word("prefix size");
    const RequestBytes prefix = reader.blob("prefix", prefixSize);
    reader.end();
    return PublicKey(modulus, exponent, prefix);
}

std::uint32_t readKey(const RequestBytes& request) {
    Reader reader(request);
    reader.word("event type");  // the client's own; the library passes on whatever it is given
    const std::uint32_t code = reader.word("key code");
    reader.end();
    switch (code) {
        case VAULTPAD_TA_KEY_RETURN:
        case VAULTPAD_TA_KEY_UP:
        case VAULTPAD_TA_KEY_LEFT:
        case VAULTPAD_TA_KEY_RIGHT:
        case VAULTPAD_TA_KEY_DOWN:
            return code;
        default:
            throw Refusal("key code " + std::to_string(code) + " is unknown");
    }
}

void checkEmpty(const RequestBytes& request) {
    Reader(request).end();
}

}  // namespace vaultpad::secureworld
