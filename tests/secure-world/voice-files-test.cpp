// What the real trusted application speaks, as files.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "sample-pads.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"
#include "voice-samples.h"
#include "voice/file-voice.h"

namespace vaultpad::secureworld {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

TaClient::Setup voiceSetup(const std::string& folder) {
    TaClient::Setup setup;
    setup.options = {"--voice", "files", "--voice-folder", folder};
    return setup;
}

class VoiceFiles : public testing::Test {
protected:
    Names spoken() const {
        Names names;
        for (const fs::directory_entry& entry : fs::directory_iterator(voice_)) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    Bytes contentOf(const std::string& name) const {
        std::ifstream file(voice_ + "/" + name, std::ios::binary);
        return Bytes(std::istreambuf_iterator<char>(file), {});
    }

    void open(const std::vector<SampleImage>& images, const std::vector<SampleClip>& clips) {
        ASSERT_NO_FATAL_FAILURE(preparePad(&client_, images));
        ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, clipsRequest(clips))) << client_.log();
        ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_SHOW)) << client_.log();
    }

    const TemporaryFolder folder_;
    const std::string voice_ = folder_ / "new/voice";
    const std::vector<SampleClip> clips_ = pinPadClips();
    TaClient client_{voiceSetup(voice_)};
};

TEST_F(VoiceFiles, HoldTheTitleAndTheFocusedKeyWhenThePadOpens) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    EXPECT_EQ((Names{"voice-0001-label.title.wav", "voice-0002-key.1.wav"}), spoken());
    EXPECT_EQ(soundOf(clips_, "label.title"), contentOf("voice-0001-label.title.wav"));
    EXPECT_EQ(soundOf(clips_, "key.1"), contentOf("voice-0002-key.1.wav"));
}

TEST_F(VoiceFiles, HoldEachKeyThatGetsTheFocus) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    press(&client_, "rdl");
    EXPECT_EQ((Names{"voice-0001-label.title.wav", "voice-0002-key.1.wav", "voice-0003-key.2.wav",
                     "voice-0004-key.5.wav", "voice-0005-key.4.wav"}),
              spoken());
    EXPECT_EQ(soundOf(clips_, "key.5"), contentOf("voice-0004-key.5.wav"));
}

TEST_F(VoiceFiles, AreNotWrittenWhenKeysArePressed) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    const Names before = spoken();
    EXPECT_EQ(1u, press(&client_, "!!!").pressed);
    EXPECT_EQ(before, spoken());
    press(&client_, "ddd");  // to Clear, Cancel below it
    const Names atClear = spoken();
    EXPECT_EQ("voice-0005-key.Clear.wav", atClear.back());
    EXPECT_EQ(1u, press(&client_, "!").pressed);
    EXPECT_EQ(atClear, spoken());
    press(&client_, "d");
    const Names atCancel = spoken();
    EXPECT_EQ(1u, press(&client_, "!").closed);
    EXPECT_EQ(atCancel, spoken());
}

TEST_F(VoiceFiles, AreNotWrittenWhenTheFocusStays) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    const Names before = spoken();
    press(&client_, "ul");
    EXPECT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_SHOW));
    EXPECT_EQ(before, spoken());
}

TEST_F(VoiceFiles, AreNotWrittenForKeysWithoutASound) {
    std::vector<SampleClip> clips = clips_;
    clips[1].sound.clear();  // key.1
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips));
    press(&client_, "ddrr");  // 4, 7, 8, 9
    press(&client_, "u");     // 6, which has no clip
    EXPECT_EQ((Names{"voice-0001-label.title.wav", "voice-0002-key.4.wav", "voice-0003-key.7.wav",
                     "voice-0004-key.8.wav", "voice-0005-key.9.wav"}),
              spoken());
}

TEST_F(VoiceFiles, BeginWithTheTitleAgainWhenThePadOpensAgain) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    EXPECT_EQ(1u, press(&client_, "dddd!").closed);
    const std::size_t before = spoken().size();
    ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_SHOW));
    const Names names = spoken();
    ASSERT_EQ(before + 2, names.size());
    EXPECT_EQ("voice-0007-label.title.wav", names[before]);
    EXPECT_EQ("voice-0008-key.1.wav", names[before + 1]);
}

TEST_F(VoiceFiles, HoldTheNewLabelOfAKeyInTheSamePlaceAfterAChangeOfPage) {
    std::vector<SampleImage> images = {{"background", {0, 0, 40, 20}, {}}};
    for (const char* key : {"main.key.Shift_L.to-upper", "upper.key.Shift_L.to-main"}) {
        images.push_back({std::string(key) + ".normal", {0, 0, 10, 10}, {}});
        images.push_back({std::string(key) + ".focus", {0, 0, 10, 10}, {}});
    }
    ASSERT_NO_FATAL_FAILURE(
        open(images, {{"main.key.Shift_L.to-upper", waveFile(1)}, {"upper.key.Shift_L.to-main", waveFile(2)}}));
    EXPECT_EQ(1u, press(&client_, "!").pressed);
    EXPECT_EQ((Names{"voice-0001-main.key.Shift_L.to-upper.wav", "voice-0002-upper.key.Shift_L.to-main.wav"}),
              spoken());
}

TEST_F(VoiceFiles, HoldTheLatestClipOfAnIdAndIgnoreUnknownIds) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    const Bytes more = clipsRequest({{"key.2", waveFile(7)}, {"no such\n../key", waveFile(8)}, {"key.2", waveFile(9)}});
    EXPECT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, more)) << client_.log();
    press(&client_, "r");
    EXPECT_EQ(waveFile(9), contentOf("voice-0003-key.2.wav"));
    EXPECT_EQ(3u, spoken().size());
}

TEST_F(VoiceFiles, AreReadableForTheirUserOnly) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    EXPECT_EQ(fs::perms::owner_all, fs::status(voice_).permissions());
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write,
              fs::status(voice_ + "/voice-0002-key.1.wav").permissions());
}

TEST_F(VoiceFiles, GoOnBehindThoseOfAnEarlierSession) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    TaClient second(voiceSetup(voice_));
    ASSERT_NO_FATAL_FAILURE(preparePad(&second));
    ASSERT_EQ(0, second.invoke(VAULTPAD_TA_EVENT_VOICE_DATA, clipsRequest({{"key.1", waveFile(3)}})));
    ASSERT_EQ(0, second.invoke(VAULTPAD_TA_EVENT_SHOW));
    EXPECT_EQ("voice-0003-key.1.wav", spoken().back());
}

TEST_F(VoiceFiles, ThatCannotBeWrittenLeaveThePadAsItIsAndTheFocusedKeyOutOfTheLog) {
    ASSERT_NO_FATAL_FAILURE(open(pinPad(), clips_));
    fs::remove_all(voice_);
    EXPECT_EQ(1u, press(&client_, "r").pressed);
    EXPECT_NE(std::string::npos, client_.log().find("the voice fails: cannot write ")) << client_.log();
    EXPECT_EQ(std::string::npos, client_.log().find("key.")) << client_.log();
}

TEST(VoiceFilesFolder, ThatCannotBeMadeOrWrittenToRefusesTheSession) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    const std::pair<std::string, const char*> bad[] = {{folder / "file/voice", "cannot create the folder "},
                                                       {"/proc", "cannot write to the folder /proc"}};
    for (const auto& [path, reason] : bad) {
        TaClient client(voiceSetup(path));
        EXPECT_EQ(-1, client.open());
        EXPECT_EQ(1, client.waitForEnd());
        EXPECT_NE(std::string::npos, client.log().find(reason)) << client.log();
    }
}

TEST(VoiceOptions, NeedTheirFolderOrPlayer) {
    for (const char* output : {"files", "player", "shout"}) {
        TaClient::Setup setup;
        setup.options = {"--voice", output};
        setup.inChild = dropMessages;
        TaClient client(setup);
        EXPECT_EQ(TaClient::kEnded, client.open()) << output;
        EXPECT_NE(0, client.waitForEnd()) << output;
    }
}

TEST(FileNamePart, HoldsPlainCharactersOnlyAndIsShort) {
    EXPECT_EQ("upper.key.Shift_L.to-main", fileNamePart("upper.key.Shift_L.to-main"));
    EXPECT_EQ(".._a_b__c_", fileNamePart(std::string("../a b\n\0c\xff", 10)));
    EXPECT_EQ(std::string(100, 'x'), fileNamePart(std::string(500, 'x')));
}

}  // namespace
}  // namespace vaultpad::secureworld
