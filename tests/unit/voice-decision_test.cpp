// Whether the guide runs.
#include "audio/voice-guide.h"
#include "platform-test.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

namespace {

using audio::VoiceGuide;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kNotStreaming = static_cast<int>(0xFE40010Bu);

class VoiceDecisionTest : public PlatformTest {
protected:
    VoiceDecisionTest() { platform().television.settings["memory/bluetooth/stream_status"] = 0; }

    static VoiceGuide& guide() { return VoiceGuide::instance(); }
};

}  // namespace

TEST_F(VoiceDecisionTest, FreshGuideIsOffWithoutClips) {
    EXPECT_FALSE(guide().enabled());
    EXPECT_FALSE(guide().networkSpeaker());
    EXPECT_THAT(guide().clips(), IsEmpty());
}

TEST_F(VoiceDecisionTest, DestroyDeletesTheGuideAndTheNextUserMakesANewOne) {
    guide().clips().push_back({});
    VoiceGuide::destroy();
    EXPECT_EQ(VoiceGuide::voiceGuide, nullptr);
    VoiceGuide::destroy();
    EXPECT_THAT(guide().clips(), IsEmpty());
}

TEST_F(VoiceDecisionTest, WithoutPermissionTheGuideIsOffAndDoesNothing) {
    guide().initialize();
    EXPECT_FALSE(guide().enabled());
    EXPECT_FALSE(guide().networkSpeaker());
    EXPECT_THAT(platform().infos(), ElementsAre("[TUI NWD] Disable voice guide"));
    guide().create(1);
    guide().waitComplete();
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(guide().clips(), IsEmpty());
}

TEST_F(VoiceDecisionTest, WithPermissionAndALocalSpeakerTheGuideIsOn) {
    voiceDecision = 5;
    guide().initialize();
    EXPECT_TRUE(guide().enabled());
    EXPECT_FALSE(guide().networkSpeaker());
    EXPECT_THAT(platform().infos(), ElementsAre("[TUI NWD] Enable voice guide"));
    EXPECT_THAT(platform().journal(),
                ElementsAre("sound_manager_get_speaker_selection()", "vconf_get_int(memory/bluetooth/stream_status)"));
}

TEST_F(VoiceDecisionTest, NetworkSpeakerTurnsThePermittedGuideOff) {
    voiceDecision = 1;
    platform().television.speaker = 3;
    guide().initialize();
    EXPECT_FALSE(guide().enabled());
    EXPECT_TRUE(guide().networkSpeaker());
    EXPECT_THAT(platform().errors(), ElementsAre("[TUI NWD] Connect Network Speaker : 3"));
    EXPECT_THAT(platform().infos(), IsEmpty());
}

TEST_F(VoiceDecisionTest, LaterInitializeForgetsTheNetworkSpeaker) {
    voiceDecision = 1;
    platform().television.speaker = 3;
    guide().initialize();
    platform().television.speaker = 2;
    guide().initialize();
    EXPECT_TRUE(guide().enabled());
    EXPECT_FALSE(guide().networkSpeaker());
}

struct Route : Named {
    int speaker;
    int streaming;
    int stop;
    int connected;
    Strings errors;
};

class AudioRoute : public VoiceDecisionTest, public testing::WithParamInterface<Route> {};

TEST_P(AudioRoute, TellsWhetherAudioMayGoToTheNetwork) {
    const Route& route = GetParam();
    platform().television.speaker = route.speaker;
    platform().television.settings["memory/bluetooth/stream_status"] = route.streaming;
    platform().television.bluetoothStop = route.stop;
    EXPECT_EQ(guide().isConnectNetworkSpeaker(), route.connected);
    EXPECT_EQ(platform().errors(), route.errors);
    const bool stops = route.streaming != 0 && route.speaker >= 0 && route.speaker <= 2;
    EXPECT_EQ(platform().count("bt_audio_stop_streaming"), stops ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    , AudioRoute,
    testing::Values(Route{{"FirstSpeaker"}, 0, 0, -1, 0, {}}, Route{{"LastLocalSpeaker"}, 2, 0, -1, 0, {}},
                    Route{{"NetworkSpeaker"}, 3, 0, 0, 1, {"[TUI NWD] Connect Network Speaker : 3"}},
                    Route{{"NegativeSelectionIsUnsigned"}, -1, 1, 0, 1, {"[TUI NWD] Connect Network Speaker : -1"}},
                    Route{{"BluetoothStopped"}, 0, 1, 0, 0, {}},
                    Route{{"BluetoothWasNotStreaming"}, 1, 1, kNotStreaming, 0, {}},
                    Route{{"NegativeStatusStops"}, 1, -1, 0, 0, {}},
                    Route{{"BluetoothGoesOn"},
                          0,
                          1,
                          static_cast<int>(0xFE40010Cu),
                          1,
                          {"[TUI NWD] Failed to stop streaming - BT : 0xfe40010c"}}),
    CaseName());

TEST_F(VoiceDecisionTest, UnknownSpeakerCountsAsANetworkSpeaker) {
    platform().fail("sound_manager_get_speaker_selection");
    EXPECT_EQ(guide().isConnectNetworkSpeaker(), 1);
    EXPECT_THAT(platform().errors(), ElementsAre("[TUI NWD] Failed to get output_route"));
    EXPECT_EQ(platform().count("vconf_get_int"), 0);
}

TEST_F(VoiceDecisionTest, UnknownBluetoothStatusCountsAsANetworkSpeaker) {
    platform().television.settings.clear();
    EXPECT_EQ(guide().isConnectNetworkSpeaker(), 1);
    EXPECT_THAT(platform().errors(), ElementsAre("[TUI NWD] Failed to get VCONF_BT_STATUS"));
}

}  // namespace vaultpad::test
