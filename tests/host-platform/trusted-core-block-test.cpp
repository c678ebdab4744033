/* Blocks: writing, reading, bounds, handles. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vaultpad-platform/trusted-core.h>

#include <cstring>
#include <string>

#include "trusted-core-fixture.h"

namespace {

class BlockTest : public TrustedCoreFixture {
protected:
    std::string bytes(void* from, uint32_t size) {
        void* data = nullptr;
        EXPECT_EQ(tzfw_core_read_blob(context_, from, &data, size), 0);
        return data == nullptr ? "" : std::string(static_cast<const char*>(data), size);
    }
};

TEST_F(BlockTest, HoldsValuesWithoutPaddingInTheirOrder) {
    void* const made = block(64);
    EXPECT_EQ(tzfw_core_write_uint(context_, made, 0x04030201), 0);
    EXPECT_EQ(tzfw_core_write_string(context_, made, "abc"), 0);
    EXPECT_EQ(tzfw_core_write_blob(context_, made, "xyz", 3), 0);
    EXPECT_EQ(tzfw_core_write_uint(context_, made, 5), 0);
    EXPECT_EQ(bytes(made, 15), std::string("\1\2\3\4abc\0xyz\5\0\0\0", 15));
}

TEST_F(BlockTest, ReadsFromItsStartWhateverWasWritten) {
    void* const made = block(64, {7, 8});
    EXPECT_THAT(words(made, 2), testing::ElementsAre(7u, 8u));
    EXPECT_EQ(tzfw_core_write_uint(context_, made, 9), 0);
    EXPECT_THAT(words(made, 1), testing::ElementsAre(9u));
}

TEST_F(BlockTest, IsZeroedWhenMade) {
    EXPECT_EQ(bytes(block(100), 100), std::string(100, '\0'));
}

TEST_F(BlockTest, TakesExactlyWhatItHasRoomFor) {
    void* const made = block(10);
    EXPECT_EQ(tzfw_core_write_blob(context_, made, "123456", 6), 0);
    EXPECT_NE(tzfw_core_write_string(context_, made, "7890"), 0);
    EXPECT_NE(tzfw_core_write_blob(context_, made, "78901", 5), 0);
    EXPECT_NE(tzfw_core_write_blob(context_, made, "7", UINT32_MAX), 0);
    EXPECT_EQ(tzfw_core_write_string(context_, made, "789"), 0) << "a refused value takes no room";
    EXPECT_NE(tzfw_core_write_uint(context_, made, 1), 0);
    EXPECT_NE(tzfw_core_write_string(context_, made, ""), 0);
    EXPECT_EQ(bytes(made, 10), std::string("123456789\0", 10));
}

TEST_F(BlockTest, GivesNoMoreThanItHolds) {
    void* const made = block(10);
    uint32_t word = 77;
    void* data = &word;
    EXPECT_NE(tzfw_core_read_blob(context_, made, &data, 11), 0);
    EXPECT_NE(tzfw_core_read_blob(context_, made, &data, UINT32_MAX), 0);
    EXPECT_EQ(data, &word);
    EXPECT_EQ(tzfw_core_read_blob(context_, made, &data, 7), 0);
    EXPECT_NE(tzfw_core_read_uint(context_, made, &word), 0);
    EXPECT_EQ(word, 77u);
    EXPECT_EQ(tzfw_core_read_blob(context_, made, &data, 3), 0);
    EXPECT_EQ(tzfw_core_read_blob(context_, made, &data, 0), 0);
    EXPECT_NE(tzfw_core_read_blob(context_, made, &data, 1), 0);
}

TEST_F(BlockTest, TakesAnEmptyBlobWithoutAnAddressButNoOtherNull) {
    void* const made = block(10);
    EXPECT_EQ(tzfw_core_write_blob(context_, made, nullptr, 0), 0);
    EXPECT_NE(tzfw_core_write_blob(context_, made, nullptr, 1), 0);
    EXPECT_NE(tzfw_core_write_string(context_, made, nullptr), 0);
    EXPECT_NE(tzfw_core_read_uint(context_, made, nullptr), 0);
    EXPECT_NE(tzfw_core_read_blob(context_, made, nullptr, 1), 0);
}

TEST_F(BlockTest, IsNotMadeWithoutASizeOrWithOtherConstants) {
    EXPECT_EQ(tzfw_core_create_shared_memory(context_, 0, 0, 3, 3), nullptr);
    EXPECT_EQ(tzfw_core_create_shared_memory(context_, 1, 64, 3, 3), nullptr);
    EXPECT_EQ(tzfw_core_create_shared_memory(context_, 0, 64, 1, 3), nullptr);
    EXPECT_EQ(tzfw_core_create_shared_memory(context_, 0, 64, 3, 1), nullptr);
}

TEST_F(BlockTest, FailsWhenTheBlockOrItsContextIsNotTheRightOne) {
    void* const other = makeContext();
    void* const stale = block(64);
    void* const live = block(64);
    tzfw_core_release_shared_memory(context_, stale);
    const struct {
        void* context;
        void* block;
    } pairs[] = {{nullptr, live},      {live, live},      {other, live},     {context_, nullptr},
                 {context_, context_}, {context_, stale}, {nullptr, nullptr}};
    for (const auto& pair : pairs) {
        uint32_t word = 0;
        void* data = nullptr;
        EXPECT_NE(tzfw_core_write_uint(pair.context, pair.block, 1), 0);
        EXPECT_NE(tzfw_core_write_string(pair.context, pair.block, "x"), 0);
        EXPECT_NE(tzfw_core_write_blob(pair.context, pair.block, "x", 1), 0);
        EXPECT_NE(tzfw_core_read_uint(pair.context, pair.block, &word), 0);
        EXPECT_NE(tzfw_core_read_blob(pair.context, pair.block, &data, 1), 0);
        tzfw_core_release_shared_memory(pair.context, pair.block);
    }
    EXPECT_EQ(tzfw_core_write_uint(context_, live, 1), 0) << "releasing through another context does nothing";
    tzfw_core_finalize_context(other);
}

TEST_F(BlockTest, FailsWhenItsContextIsFinalized) {
    void* const other = makeContext();
    void* const made = tzfw_core_create_shared_memory(other, 0, 64, 3, 3);
    ASSERT_NE(made, nullptr);
    tzfw_core_finalize_context(other);
    EXPECT_NE(tzfw_core_write_uint(other, made, 1), 0);
    EXPECT_NE(tzfw_core_write_uint(context_, made, 1), 0);
    EXPECT_EQ(tzfw_core_create_shared_memory(other, 0, 64, 3, 3), nullptr);
    tzfw_core_release_shared_memory(other, made);
    tzfw_core_finalize_context(other);
}

}  // namespace
