// Every platform call of every command but the uploads, made to fail once.
#include <functional>

#include "communication-fixture.h"

namespace vaultpad::test {

namespace {

using communication::TeeClient;
using testing::ElementsAre;

constexpr const char* kCreate = "tzfw_core_create_shared_memory";
constexpr const char* kWriteUint = "tzfw_core_write_uint";
constexpr const char* kWriteBlob = "tzfw_core_write_blob";
constexpr const char* kInvoke = "tzfw_core_invoke_event";
constexpr const char* kReadUint = "tzfw_core_read_uint";
constexpr const char* kReadBlob = "tzfw_core_read_blob";

int imeType(TeeClient& client) {
    client.orientation_ = 3;
    return client.send_ime_type(1, 6, 0, 1, 1);
}

int publicKey(TeeClient& client) {
    Bytes key(131);
    Bytes aux(8);
    return client.send_public_key(1, 2, key.data(), 128, 3, aux.data(), 8);
}

int keyEvent(TeeClient& client) {
    platform().answer = {1u, 0u, 2u, 3u, 9u, Bytes(2), Bytes(3)};
    AppResult result{};
    bool pressed = false;
    bool closed = false;
    return client.send_key_event(2, VAULTPAD_TA_KEY_RETURN, &result, &pressed, &closed);
}

int show(TeeClient& client) {
    return client.show();
}

int imageDone(TeeClient& client) {
    return client.send_image_done();
}

int refresh(TeeClient& client) {
    return client.send_refresh_loading_bar();
}

struct CommandFailure : Named {
    std::function<int(TeeClient&)> command;
    std::string function;
    int nth;
    std::string message;
    int unreleased;
};

std::vector<CommandFailure> commandFailures() {
    std::vector<CommandFailure> cases = {
        {"ImeTypeBlock", imeType, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"ImeTypeInvoke", imeType, kInvoke, 1, "tzfw_core_invoke_event() fail", 1},
        {"PublicKeyBlock", publicKey, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"PublicKeyKeyBlob", publicKey, kWriteBlob, 1, "tzfw_core_write_blob() fail", 1},
        {"PublicKeyAuxBlob", publicKey, kWriteBlob, 2, "tzfw_core_write_blob() fail", 1},
        {"PublicKeyInvoke", publicKey, kInvoke, 1, "tzfw_core_invoke_event() fail", 1},
        {"KeyEventRequestBlock", keyEvent, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"KeyEventAnswerBlock", keyEvent, kCreate, 2, "tzfw_core_create_shared_memory() fail", 1},
        {"KeyEventType", keyEvent, kWriteUint, 1, "tzfw_core_write_uint() fail", 2},
        {"KeyEventCode", keyEvent, kWriteUint, 2, "tzfw_core_write_uint() fail", 2},
        {"KeyEventInvoke", keyEvent, kInvoke, 1, "tzfw_core_invoke_event() fail", 2},
        {"KeyEventKey", keyEvent, kReadBlob, 1, "tzfw_core_read_blob() fail", 2},
        {"KeyEventData", keyEvent, kReadBlob, 2, "tzfw_core_read_blob() fail", 2},
        {"ShowBlock", show, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"ShowInvokeReleasesItsBlock", show, kInvoke, 1, "tzfw_core_invoke_event() fail", 0},
        {"ImageDoneBlock", imageDone, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"ImageDoneInvokeReleasesItsBlock", imageDone, kInvoke, 1, "tzfw_core_invoke_event() fail", 0},
        {"RefreshBlock", refresh, kCreate, 1, "tzfw_core_create_shared_memory() fail", 0},
        {"RefreshInvokeKeepsItsBlock", refresh, kInvoke, 1, "tzfw_core_invoke_event() fail", 1},
    };
    const char* settings[] = {"t_type : 1",  "t_extra : 6",      "isEnlarge : 0", "isHighcontrast : 1",
                              "t_oMode : 1", "orientation_ : 3", "base_x : 1434", "base_y : 318"};
    int nth = 0;
    for (const char* message : settings) {
        ++nth;
        cases.push_back({"ImeTypeWord" + std::to_string(nth), imeType, kWriteUint, nth, message, 1});
    }
    for (nth = 1; nth <= 5; ++nth) {
        cases.push_back(
            {"PublicKeyWord" + std::to_string(nth), publicKey, kWriteUint, nth, "tzfw_core_write_uint() fail", 1});
        cases.push_back(
            {"KeyEventWord" + std::to_string(nth), keyEvent, kReadUint, nth, "tzfw_core_read_uint() fail", 2});
    }
    return cases;
}

}  // namespace

class TeeClientCommand : public TeeClientTest, public testing::WithParamInterface<CommandFailure> {};

TEST_P(TeeClientCommand, FailsWithOneErrorLineAtTheFailingCall) {
    const CommandFailure& failure = GetParam();
    platform().fail(failure.function, failure.nth);
    EXPECT_EQ(failure.command(*client), -1);
    EXPECT_THAT(platform().errors(), ElementsAre(failure.message));
    EXPECT_EQ(unreleasedBlocks(), failure.unreleased);
    EXPECT_EQ(platform().count(failure.function), failure.nth) << "the command went on";
}

TEST_P(TeeClientCommand, SucceedsWhenItIsGivenAgain) {
    const CommandFailure& failure = GetParam();
    platform().fail(failure.function, failure.nth);
    ASSERT_EQ(failure.command(*client), -1);
    EXPECT_EQ(failure.command(*client), 0);
}

INSTANTIATE_TEST_SUITE_P(, TeeClientCommand, testing::ValuesIn(commandFailures()), CaseName());

}  // namespace vaultpad::test
