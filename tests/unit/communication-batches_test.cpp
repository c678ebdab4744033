// send_image_data: the image table in batches, and init_render_context.
#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Pixels of an image that just fits, and just does not fit, into a batch of its own: 5242880 - 150 bytes, 3 per pixel.
constexpr int kLargestPixels = 1747576;
constexpr int kTooManyPixels = kLargestPixels + 1;
constexpr int kHalfBatchPixels = 873763; /* twice (3 * this + 150) is within the budget by 2 bytes */

class ImageBatchTest : public TeeClientTest {
protected:
    void load(const std::string& id, int pixels) {
        OneObjectCanvas canvas(pixels, 1);
        canvas.object().id(id);
        ASSERT_EQ(client->loadImage(canvas), 0);
    }

    /* The names of each batch that went out. */
    static std::vector<Strings> batches() {
        std::vector<Strings> result;
        for (const auto& block : platform().blocks) {
            if (block->event != VAULTPAD_TA_EVENT_IMAGE_DATA) {
                continue;
            }
            Strings names;
            for (const Value& value : block->written) {
                if (const auto* name = std::get_if<std::string>(&value)) {
                    names.push_back(*name);
                }
            }
            EXPECT_EQ(std::get<std::uint32_t>(block->written.front()), names.size());
            result.push_back(names);
        }
        return result;
    }
};

}  // namespace

TEST_F(ImageBatchTest, EmptyTableReturnsOneWithoutCreatingABlock) {
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(ImageBatchTest, WritesTheCountAndEveryImageIntoOneBlock) {
    load("a", 1);
    load("b", 2);
    EXPECT_EQ(client->send_image_data(), 0);
    EXPECT_THAT(platform().journal(),
                ElementsAre("tzfw_core_create_shared_memory(0, 6144000, 3, 3)", "tzfw_core_write_uint(block 1, 2)",
                            "tzfw_core_write_string(block 1, /root/a.ppm)", "tzfw_core_write_uint(block 1, 1)",
                            "tzfw_core_write_uint(block 1, 1)", "tzfw_core_write_uint(block 1, 0)",
                            "tzfw_core_write_uint(block 1, 0)", "tzfw_core_write_uint(block 1, 3)",
                            "tzfw_core_write_blob(block 1, 3 bytes)", "tzfw_core_write_string(block 1, /root/b.ppm)",
                            "tzfw_core_write_uint(block 1, 2)", "tzfw_core_write_uint(block 1, 1)",
                            "tzfw_core_write_uint(block 1, 0)", "tzfw_core_write_uint(block 1, 0)",
                            "tzfw_core_write_uint(block 1, 6)", "tzfw_core_write_blob(block 1, 6 bytes)",
                            "tzfw_core_invoke_event(0)", "tzfw_core_release_shared_memory(block 1)"));
    EXPECT_THAT(platform().infos(), ElementsAre("[TUI NWD] before send_image_really with cnt = 2"));
}

TEST_F(ImageBatchTest, SentImagesAreSkippedByTheNextBatch) {
    load("a", 1);
    ASSERT_EQ(client->send_image_data(), 0);
    load("b", 1);
    load("c", 1);
    ASSERT_EQ(client->send_image_data(), 0);
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(batches(), ElementsAre(Strings{"/root/a.ppm"}, Strings{"/root/b.ppm", "/root/c.ppm"}));
}

TEST_F(ImageBatchTest, LargestImageFillsABatchOfItsOwn) {
    load("largest", kLargestPixels);
    load("next", 1);
    ASSERT_EQ(client->send_image_data(), 0);
    ASSERT_EQ(client->send_image_data(), 0);
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(batches(), ElementsAre(Strings{"/root/largest.ppm"}, Strings{"/root/next.ppm"}));
}

TEST_F(ImageBatchTest, BatchesAreFilledUpToTheBudget) {
    load("a", kHalfBatchPixels);
    load("b", kHalfBatchPixels);
    load("c", kHalfBatchPixels);
    load("d", kHalfBatchPixels + 1);
    ASSERT_EQ(client->send_image_data(), 0);
    ASSERT_EQ(client->send_image_data(), 0);
    ASSERT_EQ(client->send_image_data(), 0);
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(batches(),
                ElementsAre(Strings{"/root/a.ppm", "/root/b.ppm"}, Strings{"/root/c.ppm"}, Strings{"/root/d.ppm"}));
}

TEST_F(ImageBatchTest, ImageBeyondTheBudgetEndsTheUploadAsIfComplete) {
    load("first", 1);
    load("too large", kTooManyPixels);
    load("after", 1);
    EXPECT_EQ(client->send_image_data(), 0);
    EXPECT_EQ(client->send_image_data(), 1);
    EXPECT_THAT(batches(), ElementsAre(Strings{"/root/first.ppm"}));
}

struct BatchFailure : Named {
    const char* function;
    int nth;
    const char* message;
    bool firstIsSent; /* the failing image counts as sent */
};

class FailingImageBatch : public ImageBatchTest, public testing::WithParamInterface<BatchFailure> {};

TEST_P(FailingImageBatch, IsLoggedAndKeepsItsBlock) {
    const BatchFailure& failure = GetParam();
    load("a", 1);
    platform().fail(failure.function, failure.nth);
    EXPECT_EQ(client->send_image_data(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(failure.message));
    EXPECT_EQ(unreleasedBlocks(), platform().blocks.size());
    EXPECT_EQ(client->send_image_data(), failure.firstIsSent ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    , FailingImageBatch,
    testing::Values(
        BatchFailure{"Block", "tzfw_core_create_shared_memory", 1, "tzfw_core_create_shared_memory() fail", false},
        BatchFailure{"Count", "tzfw_core_write_uint", 1, "tzfw_core_write_uint() fail", false},
        BatchFailure{"Name", "tzfw_core_write_string", 1, "/root/a.ppm / tzfw_core_write_string() fail", true},
        BatchFailure{"Width", "tzfw_core_write_uint", 2, "/root/a.ppm / tzfw_core_write_uint() fail", true},
        BatchFailure{"Height", "tzfw_core_write_uint", 3, "/root/a.ppm / tzfw_core_write_uint() fail", true},
        BatchFailure{"X", "tzfw_core_write_uint", 4, "/root/a.ppm / tzfw_core_write_uint() fail", true},
        BatchFailure{"Y", "tzfw_core_write_uint", 5, "/root/a.ppm / tzfw_core_write_uint() fail", true},
        BatchFailure{"Size", "tzfw_core_write_uint", 6, "/root/a.ppm / tzfw_core_write_uint() fail", true},
        BatchFailure{"Pixels", "tzfw_core_write_blob", 1, "/root/a.ppm / tzfw_core_write_blob() fail", true},
        BatchFailure{"Invoke", "tzfw_core_invoke_event", 1, "tzfw_core_invoke_event() fail", true}),
    CaseName());

TEST_F(TeeClientTest, RenderContextSendsTheTrustedUiDescriptionAsItIs) {
    platform().television.trustedUiDescription = {9, 8, 7};
    EXPECT_EQ(client->init_render_context(), 0);
    EXPECT_THAT(platform().journal(),
                ElementsAre("tzfw_tui_create_context()", "tzfw_tui_get_gp_info()",
                            "tzfw_core_create_shared_memory(0, 6144000, 3, 3)", "tzfw_tui_get_gp_info_size()",
                            "tzfw_core_write_uint(block 1, 3)", "tzfw_core_write_blob(block 1, 3 bytes)",
                            "tzfw_core_invoke_event(8)", "tzfw_core_release_shared_memory(block 1)"));
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_RENDER_CONTEXT).written, (Values{3u, Bytes{9, 8, 7}}));
    EXPECT_THAT(platform().infos(), ElementsAre("called;"));
}

struct RenderContextFailure : Named {
    const char* function;
    const char* message;
};

class FailingRenderContext : public TeeClientTest, public testing::WithParamInterface<RenderContextFailure> {};

TEST_P(FailingRenderContext, IsLoggedAndReleasesItsBlock) {
    platform().fail(GetParam().function);
    EXPECT_EQ(client->init_render_context(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(GetParam().message));
    EXPECT_EQ(unreleasedBlocks(), 0);
    EXPECT_THAT(platform().events(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    , FailingRenderContext,
    testing::Values(RenderContextFailure{{"Context"}, "tzfw_tui_create_context", "tzfw_tui_create_context fail;;"},
                    RenderContextFailure{{"Description"}, "tzfw_tui_get_gp_info", "tzfw_tui_get_gp_info;"},
                    RenderContextFailure{
                        {"Block"}, "tzfw_core_create_shared_memory", "tzfw_core_create_shared_memory fail;;"},
                    RenderContextFailure{{"Size"}, "tzfw_core_write_uint", "tzfw_core_write_uint fail;;"},
                    RenderContextFailure{{"Bytes"}, "tzfw_core_write_blob", "tzfw_core_write_blob fail;;"},
                    RenderContextFailure{{"Invoke"}, "tzfw_core_invoke_event", "tzfw_core_invoke_event fail;;"}),
    CaseName());

}  // namespace vaultpad::test
