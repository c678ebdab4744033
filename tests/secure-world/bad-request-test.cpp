// Requests that are refused without a trace.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "rsa-client.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

// How far a session has come.
enum Stage { Opened, Typed, Described, ImagesSent, ImagesDone, Shown, CharacterTyped };

const RsaClient& rsa() {
    static const RsaClient client(1024);
    return client;
}

void stepTo(TaClient* client, Stage stage) {
    switch (stage) {
        case Opened:
            ASSERT_EQ(0, client->open());
            break;
        case Typed:
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest())) << client->log();
            break;
        case Described:
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest())) << client->log();
            break;
        case ImagesSent:
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(pinPad()))) << client->log();
            break;
        case ImagesDone:
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_IMAGE_DONE)) << client->log();
            break;
        case Shown:
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_SHOW)) << client->log();
            ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa().publicKeyRequest())) << client->log();
            break;
        case CharacterTyped:
            EXPECT_EQ(1u, press(client, "r!").pressed);
            break;
    }
}

struct Bad {
    const char* name;
    Stage after;
    std::uint32_t event;
    std::function<Bytes()> content;
    const char* reason;
};

void PrintTo(const Bad& bad, std::ostream* out) {
    *out << bad.name;
}

class BadRequest : public testing::TestWithParam<Bad> {};

TEST_P(BadRequest, IsRefusedWithoutATrace) {
    const Bad& bad = GetParam();
    TaClient client;
    for (int stage = Opened; stage <= CharacterTyped; ++stage) {
        ASSERT_NO_FATAL_FAILURE(stepTo(&client, static_cast<Stage>(stage)));
        if (stage == bad.after) {
            const int result = bad.event == VAULTPAD_TA_EVENT_KEY
                                   ? client.keyWith({100, bad.content()}, {2048, {}}).result
                                   : client.invoke(bad.event, bad.content());
            EXPECT_EQ(-1, result);
            const std::string line = "event " + std::to_string(bad.event) + " refused: ";
            const std::string log = client.log();
            EXPECT_NE(std::string::npos, log.find(line)) << log;
            EXPECT_NE(std::string::npos, log.find(bad.reason)) << log;
        }
    }
    press(&client, "d!d!d!");
    const KeyAnswer answer = press(&client, kFinish);
    EXPECT_EQ(plaintextOf("2580"), rsa().decrypt(answer));
}

Bytes nothing() {
    return {};
}

Bytes oneByte() {
    return {0};
}

Bad type(const char* name, TypeRequest request, const char* reason) {
    return {name, Opened, VAULTPAD_TA_EVENT_IME_TYPE, [request] { return typeRequest(request); }, reason};
}

TypeRequest with(std::uint32_t TypeRequest::*field, std::uint32_t value) {
    TypeRequest request;
    request.*field = value;
    return request;
}

std::vector<Bad> badOrder() {
    return {
        {"ImagesBeforeType", Opened, 0, [] { return imagesRequest(pinPad()); }, "before the pad's type"},
        {"ImagesBeforeDescription", Typed, 0, [] { return imagesRequest(pinPad()); }, "before the trusted-UI"},
        {"ImagesAfterTheirEnd", ImagesDone, 0,
         [] {
             return imagesRequest({{"label.x", {0, 0, 1, 1}, {}}});
         },
         "after the end"},
        {"ShowBeforeType", Opened, 1, nothing, "before the pad's type"},
        {"ShowBeforeDescription", Typed, 1, nothing, "before the trusted-UI"},
        {"ShowBeforeTheImagesEnd", ImagesSent, 1, nothing, "before the end of the images"},
        {"ShowWithContent", ImagesDone, 1, oneByte, "follow the last value"},
        {"KeyBeforeShow", ImagesDone, 2, [] { return Writer().word(2).word(36).bytes(); }, "before the show"},
        {"VoiceBeforeTheImagesEnd", ImagesSent, 4, [] { return Writer().word(0).bytes(); }, "before the end"},
        {"TypeAfterImages", ImagesSent, 5, [] { return typeRequest(); }, "once images have arrived"},
        {"LoadingBarBeforeType", Opened, 6, nothing, "before the pad's type"},
        {"LoadingBarWithContent", Typed, 6, oneByte, "follow the last value"},
        {"ImagesEndBeforeDescription", Typed, 7, nothing, "before the trusted-UI"},
        {"ImagesEndWithContent", ImagesSent, 7, oneByte, "follow the last value"},
        {"PublicKeyAfterACharacter", CharacterTyped, 3, [] { return rsa().publicKeyRequest(); }, "after the first"},
        {"UnknownKeyCode", Shown, 2, [] { return Writer().word(2).word(22).bytes(); }, "key code 22"},
        {"KeyWithoutCode", Shown, 2, [] { return Writer().word(2).bytes(); }, "key code takes 4"},
        {"KeyWithTrailingBytes", Shown, 2, [] { return Writer().word(2).word(36).word(0).bytes(); }, "follow the last"},
    };
}

std::vector<Bad> badTypes() {
    return {type("TypeZero", with(&TypeRequest::type, 0), "pad type is 0"),
            type("TypeThree", with(&TypeRequest::type, 3), "pad type is 3"),
            type("FortyOneDigits", with(&TypeRequest::extra, 41), "number of digits is 41"),
            type("OrientationTwo", with(&TypeRequest::orientation, 2), "orientation is 2"),
            type("OriginRightOfTheScreen", with(&TypeRequest::baseX, 1920), "origin x is 1920"),
            type("OriginBelowTheScreen", with(&TypeRequest::baseY, 1080), "origin y is 1080"),
            type("OriginLeftOfTheScreen", with(&TypeRequest::baseX, 0xffffffff), "origin x is -1")};
}

Bytes description(std::vector<std::uint32_t> words, std::uint32_t size = 20) {
    Writer writer;
    writer.word(size);
    for (const std::uint32_t word : words) {
        writer.word(word);
    }
    return writer.bytes();
}

std::vector<Bad> badDescriptions() {
    constexpr std::uint32_t kMagic = 0x56505549;
    const auto bad = [](const char* name, const Bytes& content, const char* reason) {
        return Bad{name, Typed, VAULTPAD_TA_EVENT_RENDER_CONTEXT, [content] { return content; }, reason};
    };
    return {bad("DescriptionWithAnotherMagic", description({1, 1, 1920, 1080, 1}), "another kind"),
            bad("DescriptionOfAnotherVersion", description({kMagic, 2, 1920, 1080, 1}), "another kind"),
            bad("DescriptionOfAnotherWidth", description({kMagic, 1, 1080, 1080, 1}), "another screen"),
            bad("DescriptionOfAnotherHeight", description({kMagic, 1, 1920, 1920, 1}), "another screen"),
            bad("DescriptionOfAnotherFormat", description({kMagic, 1, 1920, 1080, 2}), "another screen"),
            bad("DescriptionTooShort", description({kMagic, 1, 1920, 1080}, 16), "16 bytes instead of 20"),
            bad("DescriptionCutOff", description({kMagic, 1, 1920, 1080}), "description takes 20"),
            bad("DescriptionWithTrailingBytes", description({kMagic, 1, 1920, 1080, 1, 1}), "follow the last value"),
            bad("DescriptionOfHugeSize", description({}, 0xffffffff), "description takes 4294967295")};
}

struct Image {
    std::string name = "/root/label.x.ppm";
    std::uint32_t width = 2;
    std::uint32_t height = 3;
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t size = 18;
    std::size_t bytes = 18;
};

// A good image before the bad one, so that a batch taken in part would show as a name that arrived before.
Bytes batchWith(const Image& image, std::uint32_t count = 2) {
    return Writer()
        .word(count)
        .string("/root/background.ppm")
        .word(1)
        .word(1)
        .word(0)
        .word(0)
        .word(3)
        .blob({1, 2, 3})
        .string(image.name)
        .word(image.width)
        .word(image.height)
        .word(image.x)
        .word(image.y)
        .word(image.size)
        .blob(Bytes(image.bytes))
        .bytes();
}

std::vector<Bad> badImages() {
    const auto bad = [](const char* name, const Bytes& content, const char* reason) {
        return Bad{name, Described, VAULTPAD_TA_EVENT_IMAGE_DATA, [content] { return content; }, reason};
    };
    const auto image = [&](const char* name, const std::function<void(Image*)>& change, const char* reason) {
        Image changed;
        change(&changed);
        return bad(name, batchWith(changed), reason);
    };
    return {
        bad("MoreImagesThanTheBlockHolds", batchWith({}, 3), "image name has no end"),
        bad("FewerImagesThanTheBlockHolds", batchWith({}, 1), "follow the last value"),
        bad("FiveHundredAndThirteenImages", Writer().word(513).bytes(), "image count is 513"),
        image(
            "ImageOutsideTheRootFolder", [](Image* i) { i->name = "/tmp/label.x.ppm"; }, "is not /root/"),
        image(
            "ImageOfAnotherSuffix", [](Image* i) { i->name = "/root/label.x.png"; }, "is not /root/"),
        image(
            "ImageNameShorterThanItsFrame", [](Image* i) { i->name = "/root/.pp"; }, "is not /root/"),
        image(
            "ImageNameOf512Bytes", [](Image* i) { i->name = "/root/" + std::string(502, 'a') + ".ppm"; },
            "has no end within 512"),
        image(
            "ImageThatArrivedInTheSameBatch", [](Image* i) { i->name = "/root/background.ppm"; }, "arrived before"),
        image(
            "ImageWithoutWidth", [](Image* i) { *i = {"/root/label.x.ppm", 0, 3, 0, 0, 0, 0}; }, "image width is 0"),
        image(
            "ImageWithoutHeight", [](Image* i) { *i = {"/root/label.x.ppm", 2, 0, 0, 0, 0, 0}; }, "image height is 0"),
        image(
            "ImageWithFewerBytesThanPixels", [](Image* i) { i->size = 17, i->bytes = 17; }, "has 17 bytes"),
        image(
            "ImageWhosePixelCountWrapsAround", [](Image* i) { i->width = i->height = 0x10000; }, "image width is"),
        image(
            "ImageLeftOfTheScreen", [](Image* i) { i->x = static_cast<std::uint32_t>(-101); }, "beyond the screen"),
        image(
            "ImageAboveTheScreen", [](Image* i) { i->y = static_cast<std::uint32_t>(-201); }, "beyond the screen"),
        image(
            "ImageRightOfTheScreen", [](Image* i) { i->x = 1819; }, "beyond the screen"),
        image(
            "ImageBelowTheScreen", [](Image* i) { i->y = 878; }, "beyond the screen"),
        image(
            "ImageWhosePlaceWrapsAround", [](Image* i) { i->x = 0x7fffffff; }, "beyond the screen"),
        image(
            "ImageWhosePixelsAreCutOff", [](Image* i) { i->bytes = 16; }, "image pixels takes 18"),
    };
}

struct Key {
    std::size_t modulusSize = 128;
    std::uint8_t first = 0x80;
    std::uint8_t last = 1;
    Bytes exponent = {1, 0, 1};
    std::uint32_t prefixSize = 0;
    std::size_t prefixBytes = 0;
};

Bytes keyRequest(const Key& key) {
    Bytes modulus(key.modulusSize, 0x5a);
    modulus.front() = key.first;
    modulus.back() = key.last;
    return Writer()
        .word(0)
        .word(0)
        .word(static_cast<std::uint32_t>(modulus.size()))
        .word(static_cast<std::uint32_t>(key.exponent.size()))
        .blob(modulus)
        .blob(key.exponent)
        .word(key.prefixSize)
        .blob(Bytes(key.prefixBytes))
        .bytes();
}

std::vector<Bad> badKeys() {
    const auto bad = [](const char* name, const std::function<void(Key*)>& change, const char* reason) {
        Key key;
        change(&key);
        const Bytes content = keyRequest(key);
        return Bad{name, Shown, VAULTPAD_TA_EVENT_PUBLIC_KEY, [content] { return content; }, reason};
    };
    return {
        bad(
            "ModulusOf127Bytes", [](Key* k) { k->modulusSize = 127; }, "the modulus has 127"),
        bad(
            "ModulusOf192Bytes", [](Key* k) { k->modulusSize = 192; }, "the modulus has 192"),
        bad(
            "ModulusWithoutItsTopBit", [](Key* k) { k->first = 0x7f; }, "even or shorter"),
        bad(
            "EvenModulus", [](Key* k) { k->last = 2; }, "even or shorter"),
        bad(
            "NoExponent", [](Key* k) { k->exponent = {}; }, "exponent has 0"),
        bad(
            "ExponentOfNineBytes", [](Key* k) { k->exponent = Bytes(9, 1); }, "exponent has 9"),
        bad(
            "EvenExponent", [](Key* k) { k->exponent = {4}; }, "even or less than 3"),
        bad(
            "ExponentOne",
            [](Key* k) {
                k->exponent = {0, 1};
            },
            "even or less than 3"),
        bad(
            "PrefixOf257Bytes", [](Key* k) { k->prefixSize = 257, k->prefixBytes = 257; }, "prefix has more"),
        bad(
            "PrefixCutOff", [](Key* k) { k->prefixSize = 20, k->prefixBytes = 19; }, "prefix takes 20"),
        bad(
            "KeyWithTrailingBytes", [](Key* k) { k->prefixBytes = 1; }, "follow the last value"),
    };
}

const auto nameOf = [](const testing::TestParamInfo<Bad>& info) { return std::string(info.param.name); };
INSTANTIATE_TEST_SUITE_P(Order, BadRequest, testing::ValuesIn(badOrder()), nameOf);
INSTANTIATE_TEST_SUITE_P(PadType, BadRequest, testing::ValuesIn(badTypes()), nameOf);
INSTANTIATE_TEST_SUITE_P(Description, BadRequest, testing::ValuesIn(badDescriptions()), nameOf);
INSTANTIATE_TEST_SUITE_P(Images, BadRequest, testing::ValuesIn(badImages()), nameOf);
INSTANTIATE_TEST_SUITE_P(PublicKey, BadRequest, testing::ValuesIn(badKeys()), nameOf);

}  // namespace
}  // namespace vaultpad::secureworld
