// Events 1, 3, 5, 6 and 7: what each writes, and in which block.
#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

Strings emptyCommand(const std::string& size, const std::string& event) {
    return {"tzfw_core_create_shared_memory(0, " + size + ", 3, 3)", "tzfw_core_invoke_event(" + event + ")",
            "tzfw_core_release_shared_memory(block 1)"};
}

}  // namespace

TEST_F(TeeClientTest, ShowInvokesEventOneWithNothingWritten) {
    EXPECT_EQ(client->show(), 0);
    EXPECT_EQ(platform().journal(), emptyCommand("102400", "1"));
    EXPECT_THAT(platform().infos(), ElementsAre("called;"));
}

TEST_F(TeeClientTest, ImageDoneInvokesEventSevenWithNothingWritten) {
    EXPECT_EQ(client->send_image_done(), 0);
    EXPECT_EQ(platform().journal(), emptyCommand("102400", "7"));
    EXPECT_THAT(platform().infos(), ElementsAre("called;"));
}

TEST_F(TeeClientTest, RefreshLoadingBarInvokesEventSixWithNothingWrittenOrLogged) {
    EXPECT_EQ(client->send_refresh_loading_bar(), 0);
    EXPECT_EQ(platform().journal(), emptyCommand("100", "6"));
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(TeeClientTest, ImeTypeWritesItsArgumentsTheOrientationAndTheOrigin) {
    EXPECT_EQ(client->send_ime_type(1, 4, 0, 1, 7), 0);
    const Block block = platform().blockOf(VAULTPAD_TA_EVENT_IME_TYPE);
    EXPECT_EQ(block.written, words({1, 4, 0, 1, 7, 0, 738, 590}));
    EXPECT_EQ(block.size, 1024u);
    EXPECT_EQ(block.type, 0);
    EXPECT_EQ(block.inFlags, 3);
    EXPECT_EQ(block.outFlags, 3);
    EXPECT_TRUE(block.released);
    EXPECT_THAT(platform().infos(),
                ElementsAre("type : 1 / extra : 4 / enlarge : 0 / highcontrast : 1 / oMode : 7 / orientation_ : 0"));
}

TEST_F(TeeClientTest, ImeTypeSendsAnUnknownOrientationAsItIsWithTheLandscapeOrigin) {
    client->orientation_ = 2;
    EXPECT_EQ(client->send_ime_type(2, 0, 1, 0, 0), 0);
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_IME_TYPE).written, words({2, 0, 1, 0, 0, 2, 191, 500}));
}

struct WrongImeType : Named {
    int type;
    int enlarge;
};

class TeeClientWrongImeType : public TeeClientTest, public testing::WithParamInterface<WrongImeType> {};

TEST_P(TeeClientWrongImeType, IsRefusedAfterSixWordsAndNeverInvoked) {
    const int type = GetParam().type;
    const int enlarge = GetParam().enlarge;
    EXPECT_EQ(client->send_ime_type(type, 5, enlarge, 0, 0), -1);
    EXPECT_EQ(platform().count("tzfw_core_write_uint"), 6);
    EXPECT_EQ(platform().count("tzfw_core_invoke_event"), 0);
    EXPECT_EQ(unreleasedBlocks(), 1);
    EXPECT_THAT(platform().errors(),
                ElementsAre("wrong ime type and wrong enlarge mode (type : " + std::to_string(type) +
                            ", enlarge : " + std::to_string(enlarge) + ")"));
}

INSTANTIATE_TEST_SUITE_P(, TeeClientWrongImeType,
                         testing::Values(WrongImeType{"TypeThree", 3, 0}, WrongImeType{"TypeZero", 0, 1},
                                         WrongImeType{"EnlargeTwo", 1, 2}, WrongImeType{"NegativeEnlarge", 2, -1}),
                         CaseName());

TEST_F(TeeClientTest, PublicKeyWritesBothPartsAsOneBlobAndThenTheAuxiliaryBytes) {
    Bytes key = {10, 11, 12, 13, 14};
    Bytes aux = {1, 2};
    EXPECT_EQ(client->send_public_key(7, 8, key.data(), 3, 2, aux.data(), 2), 0);
    const Block block = platform().blockOf(VAULTPAD_TA_EVENT_PUBLIC_KEY);
    EXPECT_EQ(block.written, (Values{7u, 8u, 3u, 2u, key, 2u, aux}));
    EXPECT_EQ(block.size, 2048u);
    EXPECT_TRUE(block.released);
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(TeeClientTest, PublicKeyMayComeWithoutAuxiliaryBytes) {
    Bytes key = {1, 2};
    EXPECT_EQ(client->send_public_key(0, 0, key.data(), 1, 1, nullptr, 0), 0);
    EXPECT_EQ(platform().blockOf(VAULTPAD_TA_EVENT_PUBLIC_KEY).written, (Values{0u, 0u, 1u, 1u, key, 0u, Bytes{}}));
}

TEST_F(TeeClientTest, PublicKeyLengthsThatWrapAreRefused) {
    Bytes key(4);
    EXPECT_EQ(client->send_public_key(0, 0, key.data(), 0xFFFFFFFFu, 5, nullptr, 0), -1);
    EXPECT_THAT(platform().callsOf("tzfw_core_write_blob"),
                ElementsAre("tzfw_core_write_blob(block 1, 4294967295 bytes)"));
    EXPECT_EQ(platform().count("tzfw_core_invoke_event"), 0);
}

TEST_F(TeeClientTest, PublicKeyWithALengthButNoBytesIsRefused) {
    EXPECT_EQ(client->send_public_key(0, 0, nullptr, 128, 3, nullptr, 0), -1);
    EXPECT_EQ(platform().count("tzfw_core_write_blob"), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("tzfw_core_write_blob() fail"));
}

}  // namespace vaultpad::test
