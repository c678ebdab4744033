// send_data_to_ta: the whole upload before the pad is shown.
#include "audio/voice-guide.h"
#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class UploadTest : public TeeClientTest {
protected:
    void load(const std::string& id) {
        OneObjectCanvas canvas(1, 1);
        canvas.object().id(id);
        ASSERT_EQ(client->loadImage(canvas), 0);
    }
};

}  // namespace

TEST_F(UploadTest, SendsDescriptionImagesAndTheEndOfImages) {
    load("a");
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 0, 7));
    EXPECT_THAT(platform().errors(), IsEmpty());
    EXPECT_EQ(unreleasedBlocks(), 0);
}

TEST_F(UploadTest, EmptyTableSendsNoBatchButTheEndOfImages) {
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 7));
    // The images count as sent: what is loaded afterwards stays here.
    load("late");
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 7, 8, 7));
}

TEST_F(UploadTest, SecondUploadSendsDescriptionAndEndOfImagesButNoImages) {
    load("a");
    ASSERT_EQ(client->send_data_to_ta(), 0);
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 0, 7, 8, 7));
}

TEST_F(UploadTest, NewSessionSendsWhatIsLoadedInIt) {
    load("a");
    ASSERT_EQ(client->send_data_to_ta(), 0);
    client->exit();
    ASSERT_EQ(client->init(), 0);
    load("b");
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 0, 7, 8, 0, 7));
    EXPECT_EQ(std::get<std::string>(platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA).written[1]), "/root/b.ppm");
}

TEST_F(UploadTest, RepeatsBatchesUntilNothingIsLeft) {
    for (const char* id : {"a", "b", "c"}) {
        OneObjectCanvas canvas(1000, 1000);
        canvas.object().id(id);
        ASSERT_EQ(client->loadImage(canvas), 0);
    }
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 0, 0, 0, 7));
}

TEST_F(UploadTest, FailedDescriptionEndsTheUpload) {
    load("a");
    platform().fail("tzfw_tui_create_context");
    EXPECT_EQ(client->send_data_to_ta(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_tui_create_context fail;;", "initRenderContext() fail"));
    EXPECT_THAT(platform().events(), IsEmpty());
}

TEST_F(UploadTest, FailedBatchEndsTheUploadWithTheStagesMessageOnly) {
    load("a");
    load("b");
    platform().fail("tzfw_core_write_string");
    EXPECT_EQ(client->send_data_to_ta(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("/root/a.ppm / tzfw_core_write_string() fail"));
    EXPECT_THAT(platform().events(), ElementsAre(8));
}

TEST_F(UploadTest, UploadAfterAFailedBatchGoesOnWithTheFirstUnsentImage) {
    load("a");
    load("b");
    platform().fail("tzfw_core_write_string");
    ASSERT_EQ(client->send_data_to_ta(), -1);
    // The event carries every block made since the last one, the one that failed half-way included.
    platform().blocks.clear();
    EXPECT_EQ(client->send_data_to_ta(), 0);
    EXPECT_THAT(platform().events(), ElementsAre(8, 0, 7));
    const Values written = platform().blockOf(VAULTPAD_TA_EVENT_IMAGE_DATA).written;
    EXPECT_EQ(written[0], Value(1u));
    EXPECT_EQ(written[1], Value("/root/b.ppm"));
}

TEST_F(UploadTest, FailedEndOfImagesIsLoggedWithItsStage) {
    platform().fail("tzfw_core_invoke_event", 2);
    EXPECT_EQ(client->send_data_to_ta(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_core_invoke_event() fail", "Failed to send_image_done()"));
}

TEST_F(UploadTest, VoiceGuideThatIsOffSendsNothing) {
    EXPECT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().log(), IsEmpty());
    EXPECT_NE(audio::VoiceGuide::voiceGuide, nullptr) << "the guide is made on demand";
}

}  // namespace vaultpad::test
