// Event 2 and its answer.
#include <cstring>

#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KeyEventTest : public TeeClientTest {
protected:
    KeyEventTest() {
        std::memset(&result, 0x5A, sizeof(result));
        before = result;
    }

    int send() { return client->send_key_event(2, VAULTPAD_TA_KEY_UP, &result, &pressed, &closed); }

    void expectNoResultWords() const {
        EXPECT_EQ(result.enc_key_len, 0u);
        EXPECT_EQ(result.enc_data_len, 0u);
        EXPECT_EQ(result.ta_value, 0u);
    }

    void expectUntouchedArrays() const {
        EXPECT_EQ(std::memcmp(result.enc_key, before.enc_key, sizeof(result.enc_key)), 0);
        EXPECT_EQ(std::memcmp(result.enc_data, before.enc_data, sizeof(result.enc_data)), 0);
    }

    AppResult result;
    AppResult before;
    bool pressed = false;
    bool closed = false;
};

Bytes numbered(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7 + 1);
    }
    return bytes;
}

}  // namespace

TEST_F(KeyEventTest, MakesRequestThenAnswerAndReleasesThemInReverse) {
    platform().answer = {1u, 0u, 2u, 3u, 77u, Bytes{1, 2}, Bytes{3, 4, 5}};
    EXPECT_EQ(send(), 0);
    EXPECT_THAT(
        platform().journal(),
        ElementsAre("tzfw_core_create_shared_memory(0, 100, 3, 3)", "tzfw_core_create_shared_memory(0, 2048, 3, 3)",
                    "tzfw_core_write_uint(block 1, 2)", "tzfw_core_write_uint(block 1, 111)",
                    "tzfw_core_invoke_event(2)", "tzfw_core_read_uint(block 2)", "tzfw_core_read_uint(block 2)",
                    "tzfw_core_read_uint(block 2)", "tzfw_core_read_uint(block 2)", "tzfw_core_read_uint(block 2)",
                    "tzfw_core_read_blob(block 2, 2)", "tzfw_core_read_blob(block 2, 3)",
                    "tzfw_core_release_shared_memory(block 2)", "tzfw_core_release_shared_memory(block 1)"));
}

TEST_F(KeyEventTest, FillsTheRecordWithKeyDataAndWord) {
    const Bytes key = numbered(256);
    const Bytes data = numbered(512);
    platform().answer = {1u, 1u, 256u, 512u, 0xDEADBEEFu, key, data};
    EXPECT_EQ(send(), 0);
    EXPECT_EQ(result.enc_key_len, 256u);
    EXPECT_EQ(result.enc_data_len, 512u);
    EXPECT_EQ(result.ta_value, 0xDEADBEEFu);
    EXPECT_EQ(Bytes(result.enc_key, result.enc_key + 256), key);
    EXPECT_EQ(Bytes(result.enc_data, result.enc_data + 512), data);
    EXPECT_TRUE(pressed);
    EXPECT_TRUE(closed);
}

TEST_F(KeyEventTest, WritesNothingOutsideTheAnswersFields) {
    platform().answer = {0u, 0u, 256u, 512u, 1u, numbered(256), numbered(512)};
    ASSERT_EQ(send(), 0);
    AppResult expected = before;
    std::memcpy(expected.enc_key, result.enc_key, sizeof(result.enc_key));
    std::memcpy(expected.enc_data, result.enc_data, sizeof(result.enc_data));
    expected.enc_key_len = 256;
    expected.enc_data_len = 512;
    expected.ta_value = 1;
    EXPECT_EQ(std::memcmp(&result, &expected, sizeof(result)), 0);
}

TEST_F(KeyEventTest, LogsBothLengthsWithTheEmptySecondLabel) {
    platform().answer = {0u, 0u, 2u, 3u, 1u, Bytes(2), Bytes(3)};
    ASSERT_EQ(send(), 0);
    EXPECT_THAT(platform().infos(), ElementsAre("pub int data from swd\nencrypted_key_len = 2 ,  = 3"));
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(KeyEventTest, TreatsEveryWordButZeroAsATrueFlag) {
    platform().answer = {0x80000000u, 2u, 0u, 0u, 0u};
    ASSERT_EQ(send(), 0);
    EXPECT_TRUE(pressed);
    EXPECT_TRUE(closed);
}

TEST_F(KeyEventTest, ClearsFlagsThatTheAnswerDenies) {
    pressed = true;
    closed = true;
    platform().answer = {0u, 0u, 0u, 0u, 0u};
    ASSERT_EQ(send(), 0);
    EXPECT_FALSE(pressed);
    EXPECT_FALSE(closed);
}

TEST_F(KeyEventTest, AnswerWithDataButNoKeyHasNoResultButSetsTheFlags) {
    platform().answer = {1u, 1u, 0u, 32u, 5u};
    EXPECT_EQ(send(), 0);
    expectNoResultWords();
    expectUntouchedArrays();
    EXPECT_TRUE(pressed);
    EXPECT_TRUE(closed);
    EXPECT_EQ(platform().count("tzfw_core_read_blob"), 0);
    EXPECT_EQ(unreleasedBlocks(), 0);
}

TEST_F(KeyEventTest, AnswerWithAKeyButNoDataHasNoResult) {
    platform().answer = {1u, 0u, 128u, 0u, 5u};
    EXPECT_EQ(send(), 0);
    expectNoResultWords();
    expectUntouchedArrays();
    EXPECT_EQ(platform().count("tzfw_core_read_blob"), 0);
}

TEST_F(KeyEventTest, NullClosedPointerLeavesBothFlagsAlone) {
    platform().answer = {1u, 1u, 0u, 0u, 0u};
    EXPECT_EQ(client->send_key_event(2, 36, &result, &pressed, nullptr), 0);
    EXPECT_FALSE(pressed);
}

TEST_F(KeyEventTest, NullPressedPointerLeavesBothFlagsAlone) {
    platform().answer = {1u, 1u, 0u, 0u, 0u};
    EXPECT_EQ(client->send_key_event(2, 36, &result, nullptr, &closed), 0);
    EXPECT_FALSE(closed);
}

TEST_F(KeyEventTest, AnswerThatBreaksOffAfterTheFlagsHasSetThem) {
    platform().answer = {1u, 1u};
    EXPECT_EQ(send(), -1);
    EXPECT_TRUE(pressed);
    EXPECT_TRUE(closed);
    EXPECT_EQ(std::memcmp(&result, &before, sizeof(result)), 0);
}

TEST_F(KeyEventTest, AnswerThatBreaksOffBeforeTheSecondFlagSetsNeither) {
    platform().answer = {1u};
    EXPECT_EQ(send(), -1);
    EXPECT_FALSE(pressed);
    EXPECT_FALSE(closed);
}

TEST_F(KeyEventTest, AnswerWithoutItsDataLeavesTheRecordAsItWas) {
    platform().answer = {1u, 1u, 2u, 3u, 9u, Bytes(2)};
    EXPECT_EQ(send(), -1);
    EXPECT_EQ(std::memcmp(&result, &before, sizeof(result)), 0);
}

TEST_F(KeyEventTest, RefusesAKeyLongerThanTheRecord) {
    platform().answer = {1u, 1u, 257u, 16u, 9u, Bytes(257), Bytes(16)};
    EXPECT_EQ(send(), -1);
    expectNoResultWords();
    expectUntouchedArrays();
    EXPECT_TRUE(pressed);
    EXPECT_TRUE(closed);
    EXPECT_THAT(
        platform().errors(),
        ElementsAre("answer exceeds the record : encrypted key 257 bytes of 256, encrypted data 16 bytes of 512"));
}

TEST_F(KeyEventTest, RefusesDataLongerThanTheRecord) {
    platform().answer = {1u, 0u, 256u, 513u, 9u, Bytes(256), Bytes(513)};
    EXPECT_EQ(send(), -1);
    expectNoResultWords();
    expectUntouchedArrays();
    EXPECT_TRUE(pressed);
    EXPECT_FALSE(closed);
    EXPECT_EQ(platform().errors().size(), 1u);
    EXPECT_EQ(platform().count("tzfw_core_read_blob"), 0);
}

}  // namespace vaultpad::test
