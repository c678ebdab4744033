// The voice player that the real trusted application starts.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "process-state.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"
#include "voice-samples.h"

namespace vaultpad::secureworld {
namespace {

namespace fs = std::filesystem;

struct Play {
    pid_t process = 0;
    std::string circumstances;  // the rest of what the player wrote down
    Bytes sound;
};

std::string textOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

class VoicePlayer : public testing::Test {
protected:
    TaClient::Setup setup(const std::vector<std::string>& environment = {}) const {
        TaClient::Setup result;
        result.options = {"--voice", "player", "--voice-player", VAULTPAD_TEST_PLAYER};
        result.environment = {"VAULTPAD_TEST_PLAYER_FOLDER=" + folder_ / "."};
        result.environment.insert(result.environment.end(), environment.begin(), environment.end());
        return result;
    }

    void open(TaClient* client) const {
        ASSERT_NO_FATAL_FAILURE(preparePad(client));
        ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_VOICE_DATA, clipsRequest(clips_))) << client->log();
        ASSERT_EQ(0, client->invoke(VAULTPAD_TA_EVENT_SHOW)) << client->log();
    }

    // Waits for the player started as this one, from 1.
    Play play(int number) const {
        const std::string name = folder_ / std::to_string(number);
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!fs::exists(name + ".txt") && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        Play result;
        std::istringstream text(textOf(name + ".txt"));
        text >> result.process;
        result.circumstances = std::string(std::istreambuf_iterator<char>(text), {});
        const std::string sound = textOf(name + ".wav");
        result.sound = Bytes(sound.begin(), sound.end());
        EXPECT_NE(0, result.process) << "player " << number << " has written nothing";
        return result;
    }

    const TemporaryFolder folder_;
    const std::vector<SampleClip> clips_ = pinPadClips();
};

TEST_F(VoicePlayer, GetsTheTitleAndTheFocusedKeyAsOneFileAndThenEachKey) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    Bytes both = soundOf(clips_, "label.title");
    const Bytes key = soundOf(clips_, "key.1");
    both.insert(both.end(), key.begin() + 44, key.end());
    both[4] = 36 + 80;
    both[40] = 80;
    EXPECT_EQ(both, play(1).sound);
    press(&client, "r");
    EXPECT_EQ(soundOf(clips_, "key.2"), play(2).sound);
}

TEST_F(VoicePlayer, GetsNoArgumentNoOtherFileAndUnchangedSignals) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    EXPECT_EQ("\narguments 0\nfiles 0 1 2\nsignals\n", play(1).circumstances);
}

TEST_F(VoicePlayer, IsEndedBeforeTheNextKeyIsSpoken) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    const pid_t first = play(1).process;
    press(&client, "r");
    EXPECT_TRUE(hasEndedOrIsZombie(first));
    const pid_t second = play(2).process;
    EXPECT_FALSE(hasEndedOrIsZombie(second));
    EXPECT_EQ(std::string::npos, client.log().find("fails")) << client.log();
}

TEST_F(VoicePlayer, IsEndedByAKeyWithoutAClip) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    play(1);
    press(&client, "r");
    play(2);
    press(&client, "d");
    const pid_t last = play(3).process;
    press(&client, "r");  // 6
    EXPECT_TRUE(hasEndedOrIsZombie(last));
    EXPECT_FALSE(fs::exists(folder_ / "4"));
}

TEST_F(VoicePlayer, GoesOnWhileAKeyIsPressed) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    const pid_t first = play(1).process;
    EXPECT_EQ(1u, press(&client, "!!").pressed);
    EXPECT_FALSE(hasEndedOrIsZombie(first));
    EXPECT_FALSE(fs::exists(folder_ / "2"));
}

TEST_F(VoicePlayer, IsEndedWhenThePadIsLeft) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    play(1);
    // Each has to have started before the next key ends it, or it leaves no number behind.
    for (int number = 2; number <= 5; ++number) {
        press(&client, "d");
        play(number);
    }
    const pid_t last = play(5).process;
    ASSERT_FALSE(hasEndedOrIsZombie(last));
    EXPECT_EQ(1u, press(&client, "!").closed);
    EXPECT_TRUE(hasEndedOrIsZombie(last));
}

TEST_F(VoicePlayer, EndsWithTheSession) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    const pid_t player = play(1).process;
    client.closeChannel();
    EXPECT_EQ(0, client.waitForEnd());
    EXPECT_TRUE(hasEndedOrIsZombie(player));
}

TEST_F(VoicePlayer, EndsWhenTheTrustedApplicationIsKilled) {
    TaClient client(setup());
    ASSERT_NO_FATAL_FAILURE(open(&client));
    const pid_t player = play(1).process;
    kill(client.process(), SIGKILL);
    EXPECT_TRUE(endsWithin(player, 10));
}

TEST_F(VoicePlayer, ThatFailsIsToldOnceWithoutTheFocusedKey) {
    TaClient client(setup({"VAULTPAD_TEST_PLAYER_STATUS=3"}));
    ASSERT_NO_FATAL_FAILURE(open(&client));
    for (int number = 1; number <= 3; ++number) {
        ASSERT_TRUE(endsWithin(play(number).process, 10));
        EXPECT_EQ(1u, press(&client, number % 2 == 1 ? "r" : "l").pressed);
    }
    const std::string log = client.log();
    const std::size_t told = log.find("the voice player " VAULTPAD_TEST_PLAYER " fails: exit status 3\n");
    ASSERT_NE(std::string::npos, told) << log;
    EXPECT_EQ(std::string::npos, log.find("exit status", log.find('\n', told))) << log;
    EXPECT_EQ(std::string::npos, log.find("key.")) << log;
}

TEST_F(VoicePlayer, ThatEndsWellIsNotToldOf) {
    TaClient client(setup({"VAULTPAD_TEST_PLAYER_STATUS=0"}));
    ASSERT_NO_FATAL_FAILURE(open(&client));
    ASSERT_TRUE(endsWithin(play(1).process, 10));
    press(&client, "r");
    EXPECT_EQ(soundOf(clips_, "key.2"), play(2).sound);
    EXPECT_EQ(std::string::npos, client.log().find("fails")) << client.log();
}

TEST_F(VoicePlayer, ThatCannotBeRunRefusesTheSession) {
    std::ofstream(folder_ / "text") << "no program";
    const std::pair<std::string, const char*> bad[] = {
        {folder_ / "missing", "/missing cannot be run: No such file or directory"},
        {folder_ / "text", "/text cannot be run: Permission denied"},
        {folder_ / ".", "/. is no program"}};
    for (const auto& [path, reason] : bad) {
        TaClient::Setup broken = setup();
        broken.options.back() = path;
        TaClient client(broken);
        EXPECT_EQ(-1, client.open());
        EXPECT_EQ(1, client.waitForEnd());
        EXPECT_NE(std::string::npos, client.log().find(reason)) << client.log();
    }
}

}  // namespace
}  // namespace vaultpad::secureworld
