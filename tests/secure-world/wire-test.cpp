// The wire itself: framing, descriptors, blocks.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "sample-pads.h"
#include "ta-client.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

int sendType(TaClient* client, const BlockSpec& block) {
    return client->invokeBlocks(VAULTPAD_TA_EVENT_IME_TYPE, {block});
}

// The block is refused with that reason, and a proper one is taken after it.
void expectRefusedBlock(const BlockSpec& block, const std::string& reason) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    EXPECT_EQ(-1, sendType(&client, block));
    EXPECT_NE(std::string::npos, client.log().find("event 5 refused: " + reason)) << client.log();
    EXPECT_EQ(0, sendType(&client, {1024, typeRequest()})) << client.log();
}

TEST(Wire, OpensASessionForItsOwnUuid) {
    TaClient client;
    EXPECT_EQ(0, client.open());
}

TEST(Wire, RefusesAnotherUuidAndEnds) {
    TaClient client;
    VaultPadChannelRequest request = TaClient::openRequest();
    request.uuid[15] ^= 1;
    EXPECT_EQ(-1, client.exchange(&request, sizeof(request), {}));
    EXPECT_EQ(1, client.waitForEnd());
    EXPECT_NE(std::string::npos, client.log().find("another trusted application"));
}

TEST(Wire, RefusesAnEventBeforeTheSessionIsOpen) {
    TaClient client;
    EXPECT_EQ(-1, sendType(&client, {1024, typeRequest()}));
    EXPECT_EQ(0, client.open());
}

TEST(Wire, RefusesASecondOpenAndKeepsTheSession) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    EXPECT_EQ(-1, client.open());
    EXPECT_EQ(0, sendType(&client, {1024, typeRequest()}));
}

TEST(Wire, RefusesAnotherMagicVersionOrKind) {
    TaClient client;
    for (auto field :
         {&VaultPadChannelRequest::magic, &VaultPadChannelRequest::version, &VaultPadChannelRequest::kind}) {
        VaultPadChannelRequest request = TaClient::openRequest();
        request.*field += 7;
        EXPECT_EQ(-1, client.exchange(&request, sizeof(request), {}));
    }
    EXPECT_EQ(0, client.open());
}

TEST(Wire, RefusesARequestOfTheWrongSize) {
    TaClient client;
    const VaultPadChannelRequest request = TaClient::openRequest();
    EXPECT_EQ(-1, client.exchange(&request, sizeof(request) - 1, {}));
    Bytes longer(sizeof(request) + 1);
    std::memcpy(longer.data(), &request, sizeof(request));
    EXPECT_EQ(-1, client.exchange(longer.data(), longer.size(), {}));
    EXPECT_EQ(0, client.open());
}

TEST(Wire, RefusesMoreDescriptorsThanBlocksAreAllowed) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    VaultPadChannelRequest request = TaClient::openRequest();
    request.kind = VAULTPAD_CHANNEL_INVOKE;
    request.block_count = 4;
    EXPECT_EQ(-1, client.exchange(&request, sizeof(request), {0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(0, sendType(&client, {1024, typeRequest()}));
}

TEST(Wire, RefusesABlockCountThatTheDescriptorsDoNotMatch) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    const FileDescriptor block = TaClient::makeBlock({1024, typeRequest()});
    for (const std::uint32_t count : {0u, 2u, 5u, 0xffffffffu}) {
        VaultPadChannelRequest request = TaClient::openRequest();
        request.kind = VAULTPAD_CHANNEL_INVOKE;
        request.event = VAULTPAD_TA_EVENT_IME_TYPE;
        request.block_count = count;
        request.blocks[0] = {1024, 32};
        EXPECT_EQ(-1, client.exchange(&request, sizeof(request), {block.get()})) << count;
    }
    EXPECT_EQ(0, sendType(&client, {1024, typeRequest()}));
}

TEST(Wire, RefusesAnEventWithoutABlock) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    EXPECT_EQ(-1, client.invokeBlocks(VAULTPAD_TA_EVENT_SHOW, {}));
}

TEST(Wire, RefusesAnEventThatDoesNotExist) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    EXPECT_EQ(-1, client.invoke(9));
    EXPECT_EQ(-1, client.invoke(0xffffffff));
}

TEST(Wire, RefusesABlockThatCouldShrinkUnderTheTa) {
    BlockSpec block = {1024, typeRequest()};
    block.sealed = false;
    expectRefusedBlock(block, "a block is no memory file sealed against shrinking");
}

TEST(Wire, RefusesAPlainFileAsABlock) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    std::string name = testing::TempDir() + "vaultpad-block-XXXXXX";
    const FileDescriptor file(mkstemp(name.data()));
    ASSERT_TRUE(file.valid());
    unlink(name.c_str());
    ASSERT_EQ(0, ftruncate(file.get(), 1024));
    VaultPadChannelRequest request = TaClient::openRequest();
    request.kind = VAULTPAD_CHANNEL_INVOKE;
    request.event = VAULTPAD_TA_EVENT_IME_TYPE;
    request.block_count = 1;
    request.blocks[0] = {1024, 32};
    EXPECT_EQ(-1, client.exchange(&request, sizeof(request), {file.get()}));
    EXPECT_NE(std::string::npos, client.log().find("no memory file")) << client.log();
}

TEST(Wire, RefusesABlockSmallerThanAnnounced) {
    BlockSpec block = {512, typeRequest()};
    block.announcedSize = 1024;
    expectRefusedBlock(block, "a block announced with 1024 bytes has 512");
}

TEST(Wire, RefusesABlockLargerThanAnnounced) {
    BlockSpec block = {2048, typeRequest()};
    block.announcedSize = 1024;
    expectRefusedBlock(block, "a block announced with 1024 bytes has 2048");
}

TEST(Wire, RefusesMoreWrittenThanTheBlockHolds) {
    BlockSpec block = {1024, typeRequest()};
    block.announcedWritten = 1025;
    expectRefusedBlock(block, "a block of 1024 bytes is said to hold 1025");
}

TEST(Wire, RefusesABlockOfAnotherEventsSize) {
    expectRefusedBlock({2048, typeRequest()}, "a block has 2048 bytes instead of 1024");
}

TEST(Wire, RefusesBytesBehindTheLastValue) {
    Bytes content = typeRequest();
    content.push_back(0);
    expectRefusedBlock({1024, content}, "1 bytes follow the last value");
}

TEST(Wire, RefusesAnEventWhoseValuesExceedWhatWasWritten) {
    BlockSpec block = {1024, typeRequest()};
    block.announcedWritten = 31;
    expectRefusedBlock(block, "origin y takes 4 bytes, the block holds 3 more");
}

TEST(Wire, IgnoresBlocksLeftOverFromAFailedEvent) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    const BlockSpec older = {6144000, {1, 2, 3}};
    EXPECT_EQ(0, client.invokeBlocks(VAULTPAD_TA_EVENT_IME_TYPE, {older, older, older, {1024, typeRequest()}}))
        << client.log();
}

TEST(Wire, TakesTheTwoNewestBlocksOfAKeyEvent) {
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    const KeyAnswer answer = client.keyWith({100, Writer().word(2).word(VAULTPAD_TA_KEY_RIGHT).bytes()}, {2048, {}},
                                            {{100, Writer().word(2).word(99).bytes()}, {2048, {}}});
    EXPECT_EQ(0, answer.result) << client.log();
    EXPECT_EQ(1u, answer.pressed);
}

TEST(Wire, RefusesAKeyEventWithoutAnAnswerBlockOfItsSize) {
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    const BlockSpec request = {100, Writer().word(2).word(VAULTPAD_TA_KEY_RIGHT).bytes()};
    EXPECT_EQ(-1, client.invokeBlocks(VAULTPAD_TA_EVENT_KEY, {request}));
    EXPECT_EQ(-1, client.keyWith(request, {2047, {}}).result);
    // None of them moved the focus: from 1 two steps to the right are still possible.
    EXPECT_EQ(1u, press(&client, "rr").pressed);
    EXPECT_EQ(0u, press(&client, "r").pressed);
}

TEST(Wire, RefusesAKeyEventWhoseAnswerCannotBeWrittenBeforeItPressesTheKey) {
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    BlockSpec answer = {2048, {}};
    answer.readOnly = true;
    EXPECT_EQ(-1, client.keyWith({100, Writer().word(2).word(VAULTPAD_TA_KEY_RIGHT).bytes()}, answer).result);
    EXPECT_EQ(1u, press(&client, "rr").pressed);
    EXPECT_EQ(0u, press(&client, "r").pressed);
}

TEST(Wire, ClosesDescriptorsOfRefusedRequests) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    // More than a process may have open at a time.
    for (int i = 0; i < 1200; ++i) {
        ASSERT_EQ(-1, client.invokeBlocks(77, {{100, {}}}));
    }
    EXPECT_EQ(0, sendType(&client, {1024, typeRequest()}));
}

}  // namespace
}  // namespace vaultpad::secureworld
