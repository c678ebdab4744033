// What the protocol allows beside its usual course.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rsa-client.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "vaultpad/ta-protocol.h"
#include "voice-samples.h"

namespace vaultpad::secureworld {
namespace {

TypeRequest with(std::uint32_t TypeRequest::*field, std::uint32_t value) {
    TypeRequest request;
    request.*field = value;
    return request;
}

TEST(Protocol, TakesRepeatedDescriptionsEndsAndShows) {
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest()));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DONE));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_SHOW));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR));
}

TEST(Protocol, KeepsTheTextWhenAShowIsRepeated) {
    const RsaClient rsa(1024);
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest()));
    press(&client, "r!d!");
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_SHOW));
    press(&client, "d!d!");
    EXPECT_EQ(plaintextOf("2580"), rsa.decrypt(press(&client, kFinish)));
}

TEST(Protocol, RefusesAShowWithoutImages) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest()));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DONE)) << client.log();
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_SHOW));
}

TEST(Protocol, LetsASecondTypeReplaceTheFirstBeforeImagesArrive) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest(with(&TypeRequest::baseX, 0))));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest()));
    // Beyond the left edge from the first origin, not from the second.
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest({{"label.x", {-100, -200, 2, 2}, {}}})))
        << client.log();
}

TEST(Protocol, IgnoresTheNumberOfDigitsForAKeyboardAndANegativeOneForAPinPad) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    TypeRequest keyboard;
    keyboard.type = 2;
    keyboard.extra = 500;
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest(keyboard)));
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest(with(&TypeRequest::extra, 0xffffffff))));
}

TEST(Protocol, TakesImagesInSeveralBatchesUpTo512AndNoMore) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest()));
    std::vector<SampleImage> images;
    for (int i = 0; i < 256; ++i) {
        images.push_back({"label.a" + std::to_string(i), {0, 0, 1, 1}, {}});
    }
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(images)));
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(images))) << "names twice";
    for (SampleImage& image : images) {
        image.id += "b";
    }
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(images)));
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest({{"label.c", {0, 0, 1, 1}, {}}})));
}

TEST(Protocol, StoresAnImageOfAForeignIdWithoutDrawingIt) {
    TaClient client;
    std::vector<SampleImage> images = pinPad();
    images.push_back({"some picture\n", {0, 0, 5, 5}, {}});
    ASSERT_NO_FATAL_FAILURE(showPad(&client, images));
    EXPECT_NE(std::string::npos, client.log().find("some picture\\x0a")) << client.log();
}

TEST(Protocol, TakesVoiceClipsWithoutAVoice) {
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(preparePad(&client));
    std::vector<SampleClip> clips = pinPadClips();
    clips.push_back({"key.6", {}});
    ASSERT_EQ(15u, clips.size());
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, clipsRequest(clips))) << client.log();
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, Writer().word(0).bytes())) << client.log();
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_SHOW)) << client.log();
    EXPECT_EQ(1u, press(&client, "r").pressed);
}

}  // namespace
}  // namespace vaultpad::secureworld
