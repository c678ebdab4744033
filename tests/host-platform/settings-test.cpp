/* Settings, paths, sound and Bluetooth. */
#include <gtest/gtest.h>
#include <stdlib.h>
#include <vaultpad-platform/bt-audio.h>
#include <vaultpad-platform/sound-manager.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/vconf.h>

#include <memory>
#include <string>
#include <thread>

#include "television-fixture.h"

namespace {

constexpr int kRoot = VAULTPAD_TZPLATFORM_APPLICATION_ROOT;

class SettingsTest : public TelevisionFixture {};

int integer(const char* key) {
    int value = -1;
    EXPECT_EQ(vconf_get_int(key, &value), 0) << key;
    return value;
}

std::string text(const char* key) {
    const std::unique_ptr<char, decltype(&free)> value(vconf_get_str(key), free);
    return value ? value.get() : "(null)";
}

TEST_F(SettingsTest, HasDefaultsWithoutAKeyFile) {
    EXPECT_EQ(integer("db/menu/system/accessibility/focuszoom"), 0);
    EXPECT_EQ(integer("db/menu/system/accessibility/highcontrast"), 0);
    EXPECT_EQ(integer("memory/bluetooth/stream_status"), 0);
    EXPECT_EQ(text("db/menu_widget/language"), "C.UTF-8");
}

TEST_F(SettingsTest, GivesEachSettingOfTheKeyFileUnderItsOwnKey) {
    useTelevision("[settings]\nlanguage=de_DE.UTF-8\nfocus-zoom=1\n");
    EXPECT_EQ(integer("db/menu/system/accessibility/focuszoom"), 1);
    EXPECT_EQ(integer("db/menu/system/accessibility/highcontrast"), 0);
    EXPECT_EQ(text("db/menu_widget/language"), "de_DE.UTF-8");
    useTelevision("[settings]\nhigh-contrast=1\n");
    EXPECT_EQ(integer("db/menu/system/accessibility/focuszoom"), 0);
    EXPECT_EQ(integer("db/menu/system/accessibility/highcontrast"), 1);
    useTelevision("[settings]\nbluetooth-streaming=1\n");
    EXPECT_EQ(integer("memory/bluetooth/stream_status"), 1);
}

TEST_F(SettingsTest, FailsForAnUnknownKeyAndLeavesTheValueAlone) {
    int value = 77;
    for (const char* key : {"", "db/menu_widget/language", "db/menu/system/accessibility", "focus-zoom"}) {
        EXPECT_LT(vconf_get_int(key, &value), 0) << key;
    }
    EXPECT_EQ(value, 77);
    EXPECT_EQ(vconf_get_str("db/menu/system/accessibility/focuszoom"), nullptr);
}

TEST_F(SettingsTest, FailsForNullArguments) {
    int value = 0;
    EXPECT_LT(vconf_get_int(nullptr, &value), 0);
    EXPECT_LT(vconf_get_int("memory/bluetooth/stream_status", nullptr), 0);
    EXPECT_EQ(vconf_get_str(nullptr), nullptr);
}

TEST_F(SettingsTest, JoinsTheApplicationRootAndAPathWithOneSlash) {
    EXPECT_STREQ(tzplatform_mkpath(kRoot, "vaultpad/res"), VAULTPAD_TEST_APP_ROOT "/vaultpad/res");
    useTelevision("[paths]\napplication-root=/srv/app//\n");
    EXPECT_STREQ(tzplatform_mkpath(kRoot, "vaultpad"), "/srv/app/vaultpad");
    EXPECT_STREQ(tzplatform_mkpath(kRoot, "/vaultpad"), "/srv/app/vaultpad");
    EXPECT_STREQ(tzplatform_mkpath(kRoot, ""), "/srv/app/");
    useTelevision("[paths]\napplication-root=/\n");
    EXPECT_STREQ(tzplatform_mkpath(kRoot, "vaultpad"), "/vaultpad");
}

TEST_F(SettingsTest, MeansARelativePathFromTheKeyFilesFolder) {
    useTelevision("[paths]\napplication-root=app\n");
    EXPECT_EQ(tzplatform_mkpath(kRoot, "x"), folder().string() + "/app/x");
}

TEST_F(SettingsTest, KnowsNoOtherPathVariable) {
    EXPECT_EQ(tzplatform_mkpath(0, "x"), nullptr);
    EXPECT_EQ(tzplatform_mkpath(27, "x"), nullptr);
    EXPECT_EQ(tzplatform_mkpath(kRoot, nullptr), nullptr);
}

TEST_F(SettingsTest, KeepsAPathWhileAnotherThreadAsks) {
    const char* const mine = tzplatform_mkpath(kRoot, "mine");
    std::thread([]() { tzplatform_mkpath(kRoot, "another thread's"); }).join();
    EXPECT_STREQ(mine, VAULTPAD_TEST_APP_ROOT "/mine");
}

TEST_F(SettingsTest, ChangesTheVolumeForTheProcessButNotInTheFile) {
    useTelevision("[sound]\nvolume=30\n");
    int volume = 0;
    EXPECT_EQ(sound_manager_set_master_volume(31), 0);
    EXPECT_EQ(sound_manager_get_master_volume(&volume), 0);
    EXPECT_EQ(volume, 31);
    EXPECT_EQ(contentOf(file()), "[sound]\nvolume=30\n");
}

TEST_F(SettingsTest, StartsAnotherTelevisionWithItsOwnVolume) {
    useTelevision("[sound]\nvolume=30\n");
    EXPECT_EQ(sound_manager_set_master_volume(31), 0);
    useTelevision("[sound]\nvolume=40\n");
    int volume = 0;
    EXPECT_EQ(sound_manager_get_master_volume(&volume), 0);
    EXPECT_EQ(volume, 40);
}

TEST_F(SettingsTest, RefusesAVolumeOutsideItsRange) {
    for (const int bad : {-1, 101, 1000}) {
        EXPECT_NE(sound_manager_set_master_volume(bad), 0) << bad;
    }
    for (const int good : {0, 100}) {
        EXPECT_EQ(sound_manager_set_master_volume(good), 0);
        int volume = -1;
        EXPECT_EQ(sound_manager_get_master_volume(&volume), 0);
        EXPECT_EQ(volume, good);
    }
    EXPECT_NE(sound_manager_get_master_volume(nullptr), 0);
}

TEST_F(SettingsTest, TellsTheSpeakerSelection) {
    int selection = -1;
    EXPECT_EQ(sound_manager_get_speaker_selection(&selection), 0);
    EXPECT_EQ(selection, 0);
    useTelevision("[sound]\nspeaker=3\n");
    EXPECT_EQ(sound_manager_get_speaker_selection(&selection), 0);
    EXPECT_EQ(selection, 3);
    EXPECT_NE(sound_manager_get_speaker_selection(nullptr), 0);
}

TEST_F(SettingsTest, StopsBluetoothAsTheKeyFileSays) {
    EXPECT_EQ(bt_audio_stop_streaming(), 0);
    useTelevision("[sound]\nbluetooth-stop=not-streaming\n");
    EXPECT_EQ(bt_audio_stop_streaming(), VAULTPAD_BT_NOT_STREAMING);
    useTelevision("[sound]\nbluetooth-stop=fails\n");
    const int failed = bt_audio_stop_streaming();
    EXPECT_NE(failed, 0);
    EXPECT_NE(failed, VAULTPAD_BT_NOT_STREAMING);
}

}  // namespace
