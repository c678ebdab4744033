// send_voice_data: the voice guide's clips, compressed, in batches of 15.
#include <zlib.h>

#include "audio/voice-guide.h"
#include "communication-fixture.h"
#include "temporary-folder.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

namespace {

using audio::VoiceGuide;
using testing::ElementsAre;
using testing::IsEmpty;

class VoiceTransferTest : public TeeClientTest {
protected:
    /* Turns the guide on with that many clips; clip i holds i bytes. */
    void makeClips(int count) {
        std::string xml = "<audio><voices>";
        for (int i = 0; i < count; ++i) {
            xml += "<voice id=\"v" + std::to_string(i) + "\"/>";
        }
        folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", xml + "</voices></audio>");
        platform().television.applicationRoot = folder_.path();
        platform().television.settings["memory/bluetooth/stream_status"] = 0;
        libc().processesAreFake = true;
        voiceDecision = 1;
        guide().initialize();
        guide().create(1);
        for (int i = 0; i < count; ++i) {
            const Bytes data(static_cast<std::size_t>(i), static_cast<std::uint8_t>(i));
            guide().setVoiceDataListData(data.data(), i, i);
        }
        platform().clearJournal();
        platform().clearLog();
    }

    static VoiceGuide& guide() { return VoiceGuide::instance(); }

    /* The first word of each event 4. */
    static std::vector<std::uint32_t> batchSizes() {
        std::vector<std::uint32_t> sizes;
        for (const auto& block : platform().blocks) {
            if (block->event == VAULTPAD_TA_EVENT_VOICE_DATA) {
                EXPECT_EQ(block->size, 7168000u);
                sizes.push_back(std::get<std::uint32_t>(block->written.front()));
            }
        }
        return sizes;
    }

private:
    TemporaryFolder folder_;
};

Bytes uncompressed(const Bytes& compressed, std::size_t size) {
    Bytes data(size + 1);
    uLongf length = data.size();
    EXPECT_EQ(uncompress(data.data(), &length, compressed.data(), compressed.size()), Z_OK);
    data.resize(length);
    return data;
}

}  // namespace

TEST_F(VoiceTransferTest, DisabledGuideSendsNothingAndKeepsItsClips) {
    guide().clips().push_back({"kept", {1, 2, 3}});
    EXPECT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(platform().blocks, IsEmpty());
    ASSERT_EQ(guide().clips().size(), 1u);
    EXPECT_EQ(guide().clips().front().id, "kept");
}

TEST_F(VoiceTransferTest, ThirtyOneClipsGoOutAsThreeEvents) {
    makeClips(31);
    EXPECT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(batchSizes(), ElementsAre(15, 15, 1));
    EXPECT_THAT(platform().infos(), ElementsAre("[TUI NWD] Send Voice - Count 31"));
    EXPECT_EQ(unreleasedBlocks(), 0);
}

TEST_F(VoiceTransferTest, FifteenClipsGoOutAsOneEvent) {
    makeClips(15);
    EXPECT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(batchSizes(), ElementsAre(15));
}

TEST_F(VoiceTransferTest, NoClipsGoOutAsNoEvent) {
    makeClips(0);
    EXPECT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(platform().blocks, IsEmpty());
    EXPECT_THAT(platform().infos(), ElementsAre("[TUI NWD] Send Voice - Count 0"));
}

TEST_F(VoiceTransferTest, EveryClipIsSentInOrderAndUncompressesToItsBytes) {
    makeClips(20);
    const std::vector<audio::voice_data> clips = guide().clips();
    ASSERT_EQ(client->send_voice_data(), 0);
    Values sent;
    for (const auto& block : platform().blocks) {
        sent.insert(sent.end(), block->written.begin() + 1, block->written.end());
    }
    ASSERT_EQ(sent.size(), 20u * 4);
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const Bytes& blob = std::get<Bytes>(sent[4 * i + 3]);
        EXPECT_EQ(std::get<std::string>(sent[4 * i]), clips[i].id);
        EXPECT_EQ(std::get<std::uint32_t>(sent[4 * i + 1]), blob.size());
        EXPECT_EQ(std::get<std::uint32_t>(sent[4 * i + 2]), clips[i].data.size());
        EXPECT_EQ(uncompressed(blob, clips[i].data.size()), clips[i].data);
    }
}

TEST_F(VoiceTransferTest, ClipWithoutDataIsSentAsAnEmptyStream) {
    makeClips(1);
    ASSERT_EQ(client->send_voice_data(), 0);
    const Values written = platform().blockOf(VAULTPAD_TA_EVENT_VOICE_DATA).written;
    ASSERT_EQ(written.size(), 5u);
    EXPECT_EQ(written[3], Value(0u));
    // zlib's stream for no bytes at all.
    EXPECT_EQ(written[4], Value(Bytes{0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01}));
}

TEST_F(VoiceTransferTest, ClipsAreGoneAfterwardsAndTheCountStays) {
    makeClips(3);
    ASSERT_EQ(client->send_voice_data(), 0);
    EXPECT_THAT(guide().clips(), IsEmpty());
    EXPECT_EQ(guide().voiceCount(), 3);
    EXPECT_TRUE(guide().enabled());
}

TEST_F(VoiceTransferTest, SecondTransferHasNothingToReadAndFails) {
    makeClips(3);
    ASSERT_EQ(client->send_voice_data(), 0);
    EXPECT_EQ(client->send_voice_data(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("[TUI NWD] 3 voices but only 0 clips"));
    EXPECT_EQ(batchSizes().size(), 1u);
}

TEST_F(VoiceTransferTest, FailedTransferEndsTheUploadWithItsStage) {
    makeClips(1);
    platform().fail("tzfw_core_invoke_event", 3);
    EXPECT_EQ(client->send_data_to_ta(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_core_invoke_event() fail", "Failed to send_voice_data()"));
}

TEST_F(VoiceTransferTest, ClipThatCannotBeCompressedIsRefused) {
    makeClips(2);
    libc().failingAllocation = 1;
    EXPECT_EQ(client->send_voice_data(), -1);
    libc().failingAllocation = 0;
    EXPECT_THAT(platform().errors(), ElementsAre("Failed to compress " + std::to_string(Z_MEM_ERROR)));
    EXPECT_EQ(guide().clips().size(), 2u);
}

TEST_F(VoiceTransferTest, EarlierBatchesStayDeliveredAfterAFailure) {
    makeClips(31);
    platform().fail("tzfw_core_invoke_event", 2);
    EXPECT_EQ(client->send_voice_data(), -1);
    EXPECT_THAT(batchSizes(), ElementsAre(15));
    EXPECT_EQ(guide().clips().size(), 31u);
    EXPECT_EQ(unreleasedBlocks(), 1);
}

struct ClipFailure : Named {
    const char* function;
    int nth;
    const char* message;
    int unreleased;
};

class FailingVoiceTransfer : public VoiceTransferTest, public testing::WithParamInterface<ClipFailure> {};

TEST_P(FailingVoiceTransfer, IsLoggedKeepsItsBlockAndTheClips) {
    const ClipFailure& failure = GetParam();
    makeClips(2);
    platform().fail(failure.function, failure.nth);
    EXPECT_EQ(client->send_voice_data(), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(failure.message));
    EXPECT_EQ(unreleasedBlocks(), failure.unreleased);
    EXPECT_EQ(guide().clips().size(), 2u);
}

INSTANTIATE_TEST_SUITE_P(
    , FailingVoiceTransfer,
    testing::Values(ClipFailure{"Block", "tzfw_core_create_shared_memory", 1, "tzfw_core_create_shared_memory() fail",
                                0},
                    ClipFailure{"Count", "tzfw_core_write_uint", 1, "tzfw_core_write_uint() fail", 1},
                    ClipFailure{"Id", "tzfw_core_write_string", 1, "tzfw_core_write_string() fail", 1},
                    ClipFailure{"CompressedSize", "tzfw_core_write_uint", 2, "tzfw_core_write_uint() fail", 1},
                    ClipFailure{"Size", "tzfw_core_write_uint", 3, "tzfw_core_write_uint() fail", 1},
                    ClipFailure{"Bytes", "tzfw_core_write_blob", 1, "tzfw_core_write_blob() fail", 1},
                    ClipFailure{"SecondId", "tzfw_core_write_string", 2, "tzfw_core_write_string() fail", 1},
                    ClipFailure{"Invoke", "tzfw_core_invoke_event", 1, "tzfw_core_invoke_event() fail", 1}),
    CaseName());

}  // namespace vaultpad::test
