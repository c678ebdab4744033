/* The key file: what it takes, what it refuses, when it is read. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <vaultpad-platform/bt-audio.h>
#include <vaultpad-platform/cynara.h>
#include <vaultpad-platform/display-rotator.h>
#include <vaultpad-platform/sensor.h>
#include <vaultpad-platform/sound-manager.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/ui-orientation.h>
#include <vaultpad-platform/vconf.h>

#include <clocale>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "television-fixture.h"

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class TelevisionTest : public TelevisionFixture {};

int volume() {
    int value = -1;
    return sound_manager_get_master_volume(&value) == 0 ? value : -1;
}

TEST_F(TelevisionTest, TakesAFileWithEveryKey) {
    EXPECT_THAT(problemsOf("# comment\n[log]\ntarget=none\nlevel=error\n"
                           "[paths]\napplication-root=/srv/app\n"
                           "[settings]\nlanguage=ko_KR.UTF-8\nfocus-zoom=1\nhigh-contrast=1\nbluetooth-streaming=1\n"
                           "[orientation]\nmirrored=true\nrotator=portrait\nsensor=portrait-reversed\n"
                           "[sound]\nvolume=100\nspeaker=9\nbluetooth-stop=not-streaming\n"
                           "voice=player\nvoice-folder=/tmp/voice\nvoice-player=/bin/true\n"
                           "[privilege]\ndefault=deny\nallow=* 5001 *;\ndeny=label one 0 http://x/y\n"
                           "[secure-world]\nexecutable=/bin/true\ndisplay=png\nframes=frames\nview=screen\n"
                           "store=/tmp/store\nlog=none\ntimeout=600\n"),
                IsEmpty());
    EXPECT_EQ(volume(), 100);
}

TEST_F(TelevisionTest, TakesAnEmptyFileForTheDefaults) {
    EXPECT_THAT(problemsOf(""), IsEmpty());
    EXPECT_EQ(volume(), 20);
}

TEST_F(TelevisionTest, TakesSpacesAroundAValue) {
    EXPECT_THAT(problemsOf("[sound]\nvolume =   7  \n"), IsEmpty());
    EXPECT_EQ(volume(), 7);
}

struct BadFile {
    const char* text;
    const char* message; /* behind the file's name */
};

const BadFile kBadFiles[] = {
    {"[sound]\nvolume=101\n", "[sound] volume = 101: must be 0..100"},
    {"[sound]\nvolume=-1\n", "[sound] volume = -1: must be 0..100"},
    {"[sound]\nvolume=2x\n", "[sound] volume = 2x: must be 0..100"},
    {"[sound]\nvolume=\n", "[sound] volume = : must be 0..100"},
    {"[sound]\nvolume=1,5\n", "[sound] volume = 1,5: must be 0..100"},
    {"[sound]\nvolume=99999999999999999999\n", "[sound] volume = 99999999999999999999: must be 0..100"},
    {"[sound]\nspeaker=10\n", "[sound] speaker = 10: must be 0..9"},
    {"[sound]\nbluetooth-stop=maybe\n", "[sound] bluetooth-stop = maybe: must be ok | not-streaming | fails"},
    {"[sound]\nloudness=3\n",
     "[sound] loudness: unknown key; known are volume, speaker, bluetooth-stop, voice, voice-folder, voice-player"},
    {"[sound]\nvoice=loud\n", "[sound] voice = loud: must be none | files | player"},
    {"[sound]\nvoice=files\n", "[sound] voice = files: needs the key voice-folder, a folder for the files"},
    {"[sound]\nvoice=player\n", "[sound] voice = player: needs the key voice-player, the path of a program"},
    {"[sound]\nvoice-player=\n", "[sound] voice-player = : must be a path"},
    {"[radio]\nvolume=3\n",
     "[radio]: unknown group; known are log, paths, settings, orientation, sound, privilege, secure-world"},
    {"[settings]\nfocus-zoom=true\n", "[settings] focus-zoom = true: must be 0..1"},
    {"[settings]\nlanguage=\n", "[settings] language = : must be a locale's name"},
    {"[orientation]\nmirrored=1\n", "[orientation] mirrored = 1: must be false | true"},
    {"[orientation]\nsensor=upside-down\n",
     "[orientation] sensor = upside-down: must be none | landscape | portrait | portrait-reversed"},
    {"[log]\nlevel=debug\n", "[log] level = debug: must be info | error"},
    {"[log]\ntarget=\n", "[log] target = : must be stderr | none | a path"},
    {"[log]\ntarget=/nowhere/log\n", "[log] target = /nowhere/log: cannot be written: No such file or directory"},
    {"[privilege]\ndefault=ask\n", "[privilege] default = ask: must be allow | deny"},
    {"[privilege]\ndeny=* *\n",
     "[privilege] deny = * *: must be rules \"LABEL UID PRIVILEGE\" separated by ';', each field a text or *"},
    {"[privilege]\nallow=* root *\n",
     "[privilege] allow = * root *: must be rules \"LABEL UID PRIVILEGE\" separated by ';', each field a text "
     "or *"},
    {"[secure-world]\ndisplay=hologram\n", "[secure-world] display = hologram: must be none | terminal | png | window"},
    {"[secure-world]\ndisplay=png\n", "[secure-world] display = png: needs the key frames, a folder for the files"},
    {"[secure-world]\nview=all\n", "[secure-world] view = all: must be pad | screen"},
    {"[secure-world]\ntimeout=0\n", "[secure-world] timeout = 0: must be 1..600"},
    {"[secure-world]\nexecutable=\\q\n",
     "[secure-world] executable = \\q: is no text of UTF-8 in which \\\\ stands for a backslash"}};

TEST_F(TelevisionTest, NamesFileKeyValueAndWhatIsAcceptedInstead) {
    for (const BadFile& bad : kBadFiles) {
        EXPECT_EQ(problemsOf(bad.text), file().string() + ": " + bad.message + "\n");
        EXPECT_EQ(volume(), -1) << bad.text;
    }
}

TEST_F(TelevisionTest, PrintsEveryProblemOfAFile) {
    const std::string problems = problemsOf("[sound]\nvolume=x\nspeaker=x\n");
    EXPECT_THAT(problems, AllOf(HasSubstr("volume = x"), HasSubstr("speaker = x")));
}

TEST_F(TelevisionTest, RefusesAFileThatIsNoKeyFile) {
    EXPECT_THAT(problemsOf("volume up, please\n"), StartsWith(file().string() + ": is not a key file: "));
}

TEST_F(TelevisionTest, RefusesAFileThatIsNotThere) {
    setenv("VAULTPAD_TELEVISION", (folder() / "gone").c_str(), 1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(volume(), -1);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        (folder() / "gone").string() + ": cannot be read: No such file or directory; correct VAULTPAD_TELEVISION\n");
}

TEST_F(TelevisionTest, RefusesAFolderAndAPipeWithoutWaiting) {
    const std::string pipe = folder() / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& name : {folder().string(), pipe}) {
        setenv("VAULTPAD_TELEVISION", name.c_str(), 1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(volume(), -1);
        EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("cannot be read"));
    }
}

TEST_F(TelevisionTest, PrintsAProblemOnceForEachStateOfTheFile) {
    EXPECT_THAT(problemsOf("[sound]\nvolume=bad\n"), HasSubstr("volume = bad"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(volume(), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(problemsOf("[sound]\nvolume=worse\n"), HasSubstr("volume = worse"));
}

TEST_F(TelevisionTest, IsReadAgainWhenTheFileOrTheVariableChanges) {
    useTelevision("[sound]\nvolume=1\n");
    EXPECT_EQ(volume(), 1);
    useTelevision("[sound]\nvolume=2\n");
    EXPECT_EQ(volume(), 2);
    std::ofstream(file(), std::ios::app) << "speaker=5\n";
    int speaker = 0;
    EXPECT_EQ(sound_manager_get_speaker_selection(&speaker), 0);
    EXPECT_EQ(speaker, 5);
    unsetenv("VAULTPAD_TELEVISION");
    EXPECT_EQ(volume(), 20);
}

TEST_F(TelevisionTest, ComesBackWhenABadFileIsMended) {
    EXPECT_THAT(problemsOf("[sound]\nvolume=bad\n"), HasSubstr("volume = bad"));
    useTelevision("[sound]\nvolume=3\n");
    EXPECT_EQ(volume(), 3);
}

TEST_F(TelevisionTest, ReadsNumbersTheSameInEveryLocale) {
    for (const char* locale : {"C", "C.UTF-8", "de_DE.UTF-8"}) {
        setlocale(LC_ALL, locale); /* one that is not installed changes nothing */
        useTelevision("[sound]\nvolume=42\n");
        EXPECT_EQ(volume(), 42) << locale;
    }
    setlocale(LC_ALL, "C");
}

TEST_F(TelevisionTest, MakesEveryServiceFailSafelyWhenTheFileIsBad) {
    problemsOf("[sound]\nvolume=bad\n");
    int number = 7;
    EXPECT_LT(vconf_get_int("db/menu/system/accessibility/focuszoom", &number), 0);
    EXPECT_EQ(vconf_get_str("db/menu_widget/language"), nullptr);
    EXPECT_STREQ(tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, "x"), VAULTPAD_TEST_APP_ROOT "/x");
    EXPECT_EQ(ua_UI_orientation_get(), 0);
    EXPECT_FALSE(display_rotator_is_supported());
    EXPECT_NE(display_rotator_get_status(&number), 0);
    bool supported = true;
    EXPECT_NE(sensor_is_supported(VAULTPAD_SENSOR_AUTO_ROTATION, &supported), 0);
    EXPECT_NE(sound_manager_set_master_volume(5), 0);
    EXPECT_NE(sound_manager_get_speaker_selection(&number), 0);
    EXPECT_NE(bt_audio_stop_streaming(), 0);
    EXPECT_EQ(number, 7);
    cynara* handle = nullptr;
    ASSERT_EQ(cynara_initialize(&handle, nullptr), 0);
    EXPECT_NE(cynara_check(handle, "label", "", "0", "privilege"), VAULTPAD_CYNARA_ALLOWED);
    EXPECT_EQ(cynara_finish(handle), 0);
}

TEST_F(TelevisionTest, MayBeAskedFromManyThreadsWhileTheFileChanges) {
    useTelevision("[sound]\nvolume=0\n");
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&wrong]() {
            for (int round = 0; round < 500; ++round) {
                wrong += volume() < 0 ? 1 : 0;
            }
        });
    }
    for (int round = 0; round < 100; ++round) {
        const std::string text = "[sound]\nvolume=" + std::to_string(round) + "\n";
        std::ofstream(folder() / "next") << text;
        std::filesystem::rename(folder() / "next", file());
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(volume(), 99);
}

}  // namespace
