// Clips on their way to the receiver.
#include "voice-maker/clip-delivery.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>

#include <future>
#include <thread>

#include "clip-receiver.h"
#include "own-termination.h"

namespace vaultpad::helpers {

namespace {

using testing::HasSubstr;
using namespace std::chrono_literals;
using test::ClipReceiver;
using Clock = std::chrono::steady_clock;

class ClipDeliveryTest : public testing::Test {
protected:
    EndWatch watch_;
    ClipDelivery delivery_{watch_, getpid(), 5s};
};

Bytes countingClip(std::size_t size) {
    Bytes clip(size);
    for (std::size_t i = 0; i < size; ++i) {
        clip[i] = static_cast<std::uint8_t>(i * 7 / 3);
    }
    return clip;
}

}  // namespace

TEST_F(ClipDeliveryTest, LongClipGoesInFullMessagesAndTheLastIsFinal) {
    const ClipReceiver receiver;
    const Bytes clip = countingClip(50000);
    ASSERT_TRUE(delivery_.deliver(3, clip));
    Bytes received;
    const int lengths[] = {24000, 24000, 2000};
    for (const int length : lengths) {
        const auto message = receiver.message();
        ASSERT_TRUE(message);
        EXPECT_EQ(message->index, 3);
        EXPECT_EQ(message->length, length);
        EXPECT_EQ(message->final, length == 2000 ? 1 : 0);
        received.insert(received.end(), message->data, message->data + message->length);
    }
    EXPECT_EQ(received, clip);
    EXPECT_FALSE(receiver.message(0));
}

TEST_F(ClipDeliveryTest, ClipOfExactlyOneMessageHasNoEmptyOneBehindIt) {
    const ClipReceiver receiver;
    ASSERT_TRUE(delivery_.deliver(0, countingClip(24000)));
    const auto message = receiver.message();
    EXPECT_EQ(message->length, 24000);
    EXPECT_EQ(message->final, 1);
    EXPECT_FALSE(receiver.message(0));
}

TEST_F(ClipDeliveryTest, EmptyClipIsOneFinalMessageWithoutData) {
    const ClipReceiver receiver;
    ASSERT_TRUE(delivery_.deliver(9, {}));
    const auto message = receiver.message();
    EXPECT_EQ(message->index, 9);
    EXPECT_EQ(message->length, 0);
    EXPECT_EQ(message->final, 1);
}

TEST_F(ClipDeliveryTest, WaitsForAReceiverThatIsNotThereYet) {
    auto delivered = std::async(std::launch::async, [this] { return delivery_.deliver(0, countingClip(5)); });
    EXPECT_EQ(delivered.wait_for(100ms), std::future_status::timeout);
    const ClipReceiver receiver;
    EXPECT_EQ(receiver.clips(1).at(0), countingClip(5));
    EXPECT_TRUE(delivered.get());
}

TEST_F(ClipDeliveryTest, GivesUpWhenNoReceiverComes) {
    ClipDelivery delivery(watch_, getpid(), 200ms);
    const auto start = Clock::now();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(delivery.deliver(0, countingClip(5)));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("nobody receives clips"));
    EXPECT_GE(Clock::now() - start, 200ms);
    EXPECT_LT(Clock::now() - start, 10s);
}

TEST_F(ClipDeliveryTest, ReceiverThatIsGoneIsNotWaitedForAgain) {
    {
        const ClipReceiver receiver;
        ASSERT_TRUE(delivery_.deliver(0, {}));
    }
    const auto start = Clock::now();
    EXPECT_FALSE(delivery_.deliver(1, {}));
    EXPECT_LT(Clock::now() - start, 2s);
}

TEST_F(ClipDeliveryTest, ClipsAreForTheStarterAndNoOtherProcess) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t other = fork();
    if (other == 0) {
        const ClipReceiver receiver;
        (void)!write(ends[1], "r", 1);
        pause();
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ends[0], &byte, 1), 1);
    ClipDelivery delivery(watch_, getpid(), 200ms);
    EXPECT_FALSE(delivery.deliver(0, {}));
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(ClipDeliveryTest, TerminationSignalEndsTheWaiting) {
    const test::OwnTermination signal;
    const auto start = Clock::now();
    EXPECT_FALSE(delivery_.deliver(0, {}));
    EXPECT_LT(Clock::now() - start, 3s);
}

}  // namespace vaultpad::helpers
