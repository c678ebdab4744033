// What others than the voice maker may send, and what they must not be able to do.
#include <pthread.h>
#include <signal.h>

#include <atomic>
#include <vector>

#include "voice-maker-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kBacklog = 200;
constexpr uid_t kOtherUser = 4711;

/* Connections that stay open and silent until the end of the test. */
class SilentPeers {
public:
    ~SilentPeers() {
        for (const int socket : sockets_) {
            close(socket);
        }
    }
    void add(int socket) { sockets_.push_back(socket); }

private:
    std::vector<int> sockets_;
};

class HostileVoicePeer : public VoiceMakerTest {
protected:
    HostileVoicePeer() { writeVoices({"a"}); }

    /* Fills the backlog, and one more connection is being read. */
    static void fillBacklog(SilentPeers& peers) {
        peers.add(connection());
        for (int i = 0; i < kBacklog; ++i) {
            const int socket = tryToConnect();
            if (socket < 0) {
                return;
            }
            peers.add(socket);
        }
    }
};

struct BadMessage : Named {
    int index;
    int length;
};

class BadVoiceMessage : public HostileVoicePeer, public testing::WithParamInterface<BadMessage> {};

}  // namespace

TEST_P(BadVoiceMessage, IsDroppedWithItsFinalFlag) {
    guide().create(1);
    VoiceMessage bad{};
    bad.index = GetParam().index;
    bad.length = GetParam().length;
    bad.final = kFinal;
    sendBytes(&bad, sizeof(bad));
    sendChunk(0, "good", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "good");
    EXPECT_THAT(platform().errors(),
                ElementsAre("[TUI NWD] Voice message is dropped : no such clip or length, index " +
                            std::to_string(GetParam().index) + " of 1, length " + std::to_string(GetParam().length)));
}

INSTANTIATE_TEST_SUITE_P(
    , BadVoiceMessage,
    testing::Values(BadMessage{{"IndexBeyondTheClips"}, 1, 0}, BadMessage{{"NegativeIndex"}, -1, 0},
                    BadMessage{{"LargestIndex"}, INT32_MAX, 0}, BadMessage{{"NegativeLength"}, 0, -1},
                    BadMessage{{"SmallestLength"}, 0, INT32_MIN}, BadMessage{{"LengthBeyondTheMessage"}, 0, 24001}),
    CaseName());

TEST_F(HostileVoicePeer, ConnectionWithoutAMessageCompletesNothing) {
    guide().create(1);
    close(connection());
    sendChunk(0, "after", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "after");
}

TEST_F(HostileVoicePeer, ShortMessageCarriesNoBytesOfAnEarlierOne) {
    guide().create(1);
    sendChunk(0, std::string(24000, 's'), 0);
    VoiceMessage header{};
    header.length = 24000;
    header.final = kFinal;
    sendBytes(&header, 3 * sizeof(std::int32_t));
    guide().waitComplete();
    EXPECT_EQ(clip(0), std::string(24000, 's') + std::string(24000, '\0'));
}

TEST_F(HostileVoicePeer, ConnectionOfAnotherUserIsClosedUnread) {
    VoiceGuide::waitLimit = 200ms;
    libc().peerUser = kOtherUser;
    guide().create(1);
    const int socket = connection();
    VoiceMessage message{};
    message.length = 3;
    message.final = kFinal;
    // It may be closed before this already.
    send(socket, &message, sizeof(message), MSG_NOSIGNAL);
    guide().waitComplete();
    char byte = 0;
    EXPECT_LE(recv(socket, &byte, 1, 0), 0);
    close(socket);
    // The length shows that the message was not read, the time-out that it completed nothing.
    EXPECT_THAT(platform().errors(),
                Contains("[TUI NWD] Voice message is dropped : another user, index 0 of 1, length 0"));
    EXPECT_FALSE(guide().enabled());
}

TEST_F(HostileVoicePeer, FullClipTakesNoMoreAndIsNotCompletedByIt) {
    guide().create(1);
    const std::string full(24000, 'f');
    for (int i = 0; i < 19; ++i) {
        sendChunk(0, full, 0);
    }
    sendChunk(0, "x", kFinal);
    sendChunk(0, "", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0).size(), 456000u);
    EXPECT_THAT(platform().errors(),
                ElementsAre("[TUI NWD] Voice message is dropped : the clip is full, index 0 of 1, length 1"));
}

TEST_F(HostileVoicePeer, EndlessBadMessagesDoNotFillTheLog) {
    guide().create(1);
    for (int i = 0; i < 100; ++i) {
        sendChunk(7, "", kFinal);
    }
    sendChunk(0, "good", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "good");
    EXPECT_THAT(platform().errors(), SizeIs(17));
    EXPECT_EQ(platform().errors().back(), "[TUI NWD] Further dropped voice messages are not logged");
}

TEST_F(HostileVoicePeer, BacklogOfSilentPeersLeavesTimeForTheClips) {
    guide().create(1);
    SilentPeers peers;
    fillBacklog(peers);
    const auto start = Clock::now();
    sendChunk(0, "through", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "through");
    EXPECT_LT(Clock::now() - start, 25s);
}

TEST_F(HostileVoicePeer, SilentPeersDoNotDelayTheTimeOut) {
    VoiceGuide::waitLimit = 100ms;
    guide().create(1);
    SilentPeers peers;
    fillBacklog(peers);
    const auto start = Clock::now();
    guide().waitComplete();
    EXPECT_LT(Clock::now() - start, 1500ms);
    EXPECT_THAT(platform().errors(), Contains("[TUI NWD] Time out : Voice create "));
    EXPECT_FALSE(guide().enabled());
}

TEST_F(HostileVoicePeer, SilentPeersDoNotDelayDestroy) {
    guide().create(1);
    SilentPeers peers;
    fillBacklog(peers);
    const auto start = Clock::now();
    VoiceGuide::destroy();
    EXPECT_LT(Clock::now() - start, 1500ms);
}

TEST_F(HostileVoicePeer, EndlessMessagesDoNotDelayTheTimeOut) {
    VoiceGuide::waitLimit = 200ms;
    guide().create(1);
    std::atomic<bool> done{false};
    std::thread peer([&done] {
        while (!done) {
            const int socket = tryToConnect();
            if (socket >= 0) {
                const VoiceMessage message{};
                send(socket, &message, sizeof(message), MSG_NOSIGNAL);
                close(socket);
            }
        }
    });
    const auto start = Clock::now();
    guide().waitComplete();
    EXPECT_LT(Clock::now() - start, 2s);
    EXPECT_FALSE(guide().enabled());
    done = true;
    peer.join();
}

TEST_F(HostileVoicePeer, NameHeldByAnotherProcessTurnsTheGuideOffAtOnce) {
    platform().fail("bind");
    guide().create(1);
    const auto start = Clock::now();
    guide().waitComplete();
    EXPECT_LT(Clock::now() - start, 5s);
    EXPECT_FALSE(guide().enabled());
    EXPECT_THAT(guide().clips(), IsEmpty());
}

TEST_F(HostileVoicePeer, SignalsOfTheClientDoNotEndTheReceiver) {
    struct sigaction interrupting {};
    interrupting.sa_handler = [](int) {};
    struct sigaction before {};
    sigaction(SIGUSR1, &interrupting, &before);
    guide().create(1);
    close(connection());
    // Until the receiver is back in accept().
    std::this_thread::sleep_for(50ms);
    // With the caller's thread closed to it, the receiver's is the only one that could take the signal.
    sigset_t user;
    sigset_t mask;
    sigemptyset(&user);
    sigaddset(&user, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &user, &mask);
    sigqueue(getpid(), SIGUSR1, sigval{});
    std::this_thread::sleep_for(20ms);
    sendChunk(0, "heard", kFinal);
    guide().waitComplete();
    EXPECT_TRUE(guide().enabled());
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    sigaction(SIGUSR1, &before, nullptr);
}

}  // namespace vaultpad::test
