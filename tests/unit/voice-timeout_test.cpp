// A voice maker that fails to deliver, or delivers too late.
#include "voice-maker-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

}  // namespace

TEST_F(VoiceMakerTest, WaitLimitIsThirtySeconds) {
    EXPECT_EQ(VoiceGuide::waitLimit, std::chrono::seconds(30));
}

TEST_F(VoiceMakerTest, MakerThatNeverConnectsIsKilledAndTheGuideTurnedOff) {
    VoiceGuide::waitLimit = 50ms;
    guide().create(1);
    const auto start = std::chrono::steady_clock::now();
    guide().waitComplete();
    EXPECT_GE(std::chrono::steady_clock::now() - start, 45ms);
    EXPECT_THAT(platform().errors(), Contains("[TUI NWD] Time out : Voice create "));
    EXPECT_THAT(platform().callsOf("kill"), ElementsAre("kill(4242, SIGKILL)"));
    EXPECT_THAT(guide().clips(), IsEmpty());
    EXPECT_EQ(guide().voiceCount(), 3);
    EXPECT_FALSE(guide().enabled());
}

TEST_F(VoiceMakerTest, LateMakerAfterATimeOutHarmsNothing) {
    VoiceGuide::waitLimit = 20ms;
    guide().create(1);
    sendChunk(0, "early", kFinal);
    guide().waitComplete();
    EXPECT_THAT(guide().clips(), IsEmpty());
    VoiceGuide::destroy();
    EXPECT_EQ(VoiceGuide::voiceGuide, nullptr);
}

TEST_F(VoiceMakerTest, GuideThatIsNotAwaitedCanBeDestroyed) {
    guide().create(1);
    VoiceGuide::destroy();
    EXPECT_EQ(VoiceGuide::voiceGuide, nullptr);
}

TEST_F(VoiceMakerTest, GuideCanBeCreatedAgainAfterATimeOut) {
    VoiceGuide::waitLimit = 20ms;
    guide().create(1);
    guide().waitComplete();
    VoiceGuide::waitLimit = 30s;
    writeVoices({"a"});
    guide().initialize();
    guide().create(1);
    sendChunk(0, "second", kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "second");
}

TEST_F(VoiceMakerTest, SocketThatCannotBeBoundCountsAsATimeOutAtOnce) {
    platform().fail("bind");
    guide().create(1);
    const auto start = std::chrono::steady_clock::now();
    guide().waitComplete();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
    EXPECT_THAT(platform().errors(),
                ElementsAre("[TUI NWD] Failed to open voice socket", "[TUI NWD] Time out : Voice create "));
    EXPECT_FALSE(guide().enabled());
}

TEST_F(VoiceMakerTest, FailedForkKillsNobodyAfterTheTimeOut) {
    VoiceGuide::waitLimit = 20ms;
    platform().fail("fork");
    guide().create(1);
    guide().waitComplete();
    EXPECT_EQ(platform().count("kill"), 0);
    EXPECT_FALSE(guide().enabled());
}

TEST_F(VoiceMakerTest, WaitingWithoutATaskIsAFutureError) {
    EXPECT_THROW(guide().waitComplete(), std::future_error);
}

}  // namespace vaultpad::test
