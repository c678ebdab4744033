// From the focused key to the sound of its name: the library with the guide on, the voice maker, the trusted
// application.
#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <map>
#include <thread>

#include "client.h"
#include "helper-process.h"
#include "languages.h"
#include "television.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Strings = std::vector<std::string>;

constexpr std::size_t kHeaderSize = 44;
constexpr double kSamplesPerSecond = 22050;
// Of full scale 32767: speech of espeak-ng has about a tenth of it.
constexpr double kQuietestSpeech = 500;

std::string spelled(const std::string& character) {
    return "<say-as interpret-as=\"characters\">" + character + "</say-as>";
}

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class SpokenFocus : public testing::Test {
protected:
    SpokenFocus() {
        useBuiltLocales();
        television_.set("sound", "voice", "files").set("sound", "voice-folder", voices().string()).apply();
    }

    std::filesystem::path voices() const { return television_.folder() / "voices"; }

    /* Waits until that many clips were spoken in all, and a little for one too many; returns the names from the nth on.
     */
    Strings spokenFrom(std::size_t first, std::size_t count) const {
        Strings names = spoken();
        for (int attempt = 0; attempt < 500 && names.size() < count; ++attempt) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            names = spoken();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        names = spoken();
        names.erase(names.begin(), names.begin() + static_cast<std::ptrdiff_t>(std::min(first, names.size())));
        return names;
    }

    /* What was spoken beyond the first so many, some time after the last key. */
    Strings spokenAfter(std::size_t first) const {
        std::this_thread::sleep_for(std::chrono::milliseconds(400));
        return spokenFrom(first, 0);
    }

    /* The spoken clips' files in order. */
    Strings spoken() const {
        Strings names;
        for (const auto& file : std::filesystem::directory_iterator(voices())) {
            if (file.path().extension() == ".wav") {
                names.push_back(file.path().filename().string());
            }
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /* What espeak-ng itself writes for the text. */
    std::string referenceFor(const std::string& voice, const std::string& markup) const {
        const std::filesystem::path file = television_.folder() / "reference.wav";
        HelperProcess speaker(television_.folder(), "/usr/bin/env",
                              {"espeak-ng", "-b", "1", "-m", "-z", "-v", voice, "-w", file.string(), "--", markup});
        EXPECT_EQ(speaker.exitStatus(), 0) << speaker.output();
        return contentOf(file);
    }

    void expectSpeech(const std::string& name, const std::string& voice, const std::string& markup) const {
        const std::string clip = contentOf(voices() / name);
        ASSERT_GT(clip.size(), kHeaderSize) << name;
        std::vector<std::int16_t> samples((clip.size() - kHeaderSize) / 2);
        std::memcpy(samples.data(), clip.data() + kHeaderSize, 2 * samples.size());
        double squares = 0;
        for (const std::int16_t sample : samples) {
            squares += static_cast<double>(sample) * sample;
        }
        const double count = static_cast<double>(samples.size());
        EXPECT_GT(std::sqrt(squares / count), kQuietestSpeech) << name;
        EXPECT_GT(count / kSamplesPerSecond, 0.1) << name;
        EXPECT_LT(count / kSamplesPerSecond, 3.0) << name;
        EXPECT_TRUE(clip == referenceFor(voice, markup)) << name << " is not what espeak-ng says for " << markup;
    }

    Television television_;
    Client client_;
};

}  // namespace

TEST_F(SpokenFocus, OpeningSpeaksTheTitleAndTheFirstKey) {
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    const Strings names = spokenFrom(0, 2);
    ASSERT_THAT(names, ElementsAre("voice-0001-label.title.wav", "voice-0002-key.1.wav"));
    expectSpeech(names[0], "en-us", "Enter PIN");
    expectSpeech(names[1], "en-us", spelled("1"));
}

TEST_F(SpokenFocus, EveryMoveSpeaksTheKeyThatHasTheFocusThen) {
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    spokenFrom(0, 2);
    client_.pressAll("Right,Down,Down,Down");
    const Strings names = spokenFrom(2, 6);
    ASSERT_THAT(names, ElementsAre("voice-0003-key.2.wav", "voice-0004-key.5.wav", "voice-0005-key.8.wav",
                                   "voice-0006-key.0.wav"));
    expectSpeech(names[0], "en-us", spelled("2"));
    expectSpeech(names[1], "en-us", spelled("5"));
    expectSpeech(names[2], "en-us", spelled("8"));
    expectSpeech(names[3], "en-us", spelled("0"));
}

TEST_F(SpokenFocus, TypingSpeaksNothing) {
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    client_.press("Right");
    const std::size_t before = spokenFrom(0, 3).size();
    client_.pressAll("Return*4");
    EXPECT_THAT(spokenAfter(before), IsEmpty());
}

TEST_F(SpokenFocus, KeyboardSpeaksItsKeysAndItsTitle) {
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_KEYBOARD, 0), 0);
    spokenFrom(0, 2);
    client_.pressAll("Right*11,Down");
    const Strings names = spokenFrom(0, 14);
    ASSERT_THAT(names, SizeIs(testing::Ge(13u)));
    expectSpeech(names[0], "en-us", "Enter password");
    for (const std::string& name : names) {
        if (name.find("-key.BackSpace.") != std::string::npos) {
            expectSpeech(name, "en-us", "Backspace");
        }
    }
}

TEST_F(SpokenFocus, PadSpeaksTheMenuLanguage) {
    television_.set("settings", "language", "de_DE.UTF-8").apply();
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    const Strings names = spokenFrom(0, 2);
    ASSERT_THAT(names, SizeIs(2));
    expectSpeech(names[0], "de", "PIN eingeben");
    expectSpeech(names[1], "de", spelled("1"));
}

TEST_F(SpokenFocus, NetworkSpeakerKeepsThePadSilent) {
    television_.set("sound", "speaker", "3").apply();
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    client_.pressAll("Right,Down");
    EXPECT_THAT(spokenAfter(0), IsEmpty());
    EXPECT_THAT(television_.log(), testing::HasSubstr("[TUI NWD] Connect Network Speaker : 3"));
}

TEST_F(SpokenFocus, StreamingThatCannotBeStoppedKeepsThePadSilent) {
    television_.set("settings", "bluetooth-streaming", "1").set("sound", "bluetooth-stop", "fails").apply();
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    EXPECT_THAT(spokenAfter(0), IsEmpty());
}

TEST_F(SpokenFocus, StreamingThatIsStoppedLetsThePadSpeak) {
    television_.set("settings", "bluetooth-streaming", "1").apply();
    ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 0), 0);
    EXPECT_THAT(spokenFrom(0, 2), SizeIs(2));
}

}  // namespace vaultpad::test
