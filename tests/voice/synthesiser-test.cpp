// Speech from espeak-ng, and from programs that only pretend.
#include "voice-maker/synthesiser.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>

#include "languages.h"
#include "own-termination.h"
#include "television.h"

namespace vaultpad::helpers {

namespace {

using testing::IsEmpty;
using testing::SizeIs;
using namespace std::chrono_literals;
using Clips = std::map<std::size_t, Bytes>;

class SynthesiserTest : public testing::Test {
protected:
    /* Speaks each list of ways; returns the clips. */
    Clips speak(const std::vector<std::vector<Utterance>>& items, const std::string& program = "espeak-ng",
                std::size_t jobs = 4) {
        Synthesiser synthesiser(watch_, program, jobs);
        for (std::size_t i = 0; i < items.size(); ++i) {
            synthesiser.add(i, items[i]);
        }
        Clips clips;
        completed_ = synthesiser.run([&clips](std::size_t number, const Bytes& clip) {
            EXPECT_TRUE(clips.emplace(number, clip).second) << "clip " << number << " came twice";
            return true;
        });
        return clips;
    }

    Bytes speakOne(const Utterance& utterance, const std::string& program = "espeak-ng") {
        return speak({{utterance}}, program)[0];
    }

    /* A program that stands in for espeak-ng. */
    std::string script(const std::string& commands) {
        const std::filesystem::path path = television_.folder() / "speaker";
        std::ofstream(path) << "#!/bin/sh\n" << commands << "\n";
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path.string();
    }

    EndWatch watch_;
    bool completed_ = false;

private:
    Television television_;
};

}  // namespace

TEST_F(SynthesiserTest, SpeaksEveryUtteranceUnderItsNumber) {
    const Clips clips = speak({{{"en-us", "one"}}, {{"en-us", "backspace"}}, {{"de", "Fertig"}}, {{"ko", "완료"}}});
    EXPECT_TRUE(completed_);
    ASSERT_THAT(clips, SizeIs(4));
    for (const auto& [number, clip] : clips) {
        EXPECT_GT(clip.size(), 4410u) << number;
        EXPECT_EQ(clip, completeWave(clip)) << number;
    }
    EXPECT_NE(clips.at(0), clips.at(1));
}

TEST_F(SynthesiserTest, SameTextAndVoiceMakeTheSameClip) {
    const Utterance utterance{"en-us", "Enter PIN"};
    EXPECT_EQ(speakOne(utterance), speakOne(utterance));
}

TEST_F(SynthesiserTest, SpelledCharactersSpeakWhereTheyAreSilentAsText) {
    EXPECT_THAT(speakOne({"en-us", "["}), IsEmpty());
    EXPECT_THAT(speakOne({"en-us", "<say-as interpret-as=\"characters\">[</say-as>"}), SizeIs(testing::Gt(4410u)));
}

TEST_F(SynthesiserTest, EveryMenuLanguageHasAVoice) {
    test::useBuiltLocales();
    std::vector<std::vector<Utterance>> items;
    const std::vector<test::Language> languages = test::languages();
    for (const test::Language& language : languages) {
        const Speech speech(language.locale.c_str(), VAULTPAD_TEST_CATALOGUES);
        items.push_back({speech.utterances({"key.Return", "Done", true, ""}).front()});
    }
    const Clips clips = speak(items);
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_THAT(clips.at(i), SizeIs(testing::Gt(4410u))) << languages[i] << ": " << items[i].front().voice;
    }
}

TEST_F(SynthesiserTest, LanguageWithoutAVoiceIsSpokenTheNextWay) {
    const Clips clips = speak({{{"nobody", "Fertig"}, {"en-us", "Done"}}});
    EXPECT_EQ(clips.at(0), speakOne({"en-us", "Done"}));
}

TEST_F(SynthesiserTest, WhatCannotBeSpokenIsAnEmptyClip) {
    testing::internal::CaptureStderr();
    EXPECT_THAT(speakOne({"nobody", "Fertig"}), IsEmpty());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("\"Fertig\" stays silent"));
    EXPECT_TRUE(completed_);
}

TEST_F(SynthesiserTest, MissingProgramMakesEmptyClipsAndSaysWhatToInstall) {
    testing::internal::CaptureStderr();
    const Clips clips = speak({{{"en-us", "a"}, {"en-us", "b"}}, {{"en-us", "c"}}}, "/nonexistent/espeak-ng");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("install the package espeak-ng"));
    EXPECT_TRUE(completed_);
    EXPECT_THAT(clips, testing::ElementsAre(testing::Pair(0, IsEmpty()), testing::Pair(1, IsEmpty())));
}

TEST_F(SynthesiserTest, ProgramThatFailsAfterSpeakingMakesAnEmptyClip) {
    EXPECT_THAT(speakOne({"en-us", "word"}, script("espeak-ng \"$@\"; exit 1")), IsEmpty());
}

TEST_F(SynthesiserTest, ProgramThatHangsMakesAnEmptyClipAfterSeconds) {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THAT(speakOne({"en-us", "word"}, script("exec sleep 60")), IsEmpty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

TEST_F(SynthesiserTest, ProgramThatNeverStopsSpeakingMakesAnEmptyClip) {
    EXPECT_THAT(speakOne({"en-us", "word"}, script("exec cat /dev/zero")), IsEmpty());
}

TEST_F(SynthesiserTest, SpeechOfAnotherFormMakesAnEmptyClip) {
    EXPECT_THAT(speakOne({"en-us", "word"}, script("exec head -c 20000 /dev/zero")), IsEmpty());
}

TEST_F(SynthesiserTest, EndsWhenTheReceiverWantsNoMore) {
    Synthesiser synthesiser(watch_, "espeak-ng", 2);
    synthesiser.add(0, {{"en-us", "one"}});
    synthesiser.add(1, {{"en-us", "two"}});
    int clips = 0;
    EXPECT_FALSE(synthesiser.run([&clips](std::size_t, const Bytes&) { return ++clips > 1; }));
    EXPECT_EQ(clips, 1);
}

TEST_F(SynthesiserTest, EndsAtATerminationSignal) {
    Synthesiser synthesiser(watch_, script("exec sleep 60"), 2);
    synthesiser.add(0, {{"en-us", "one"}});
    const test::OwnTermination signal;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(synthesiser.run([](std::size_t, const Bytes&) { return true; }));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 20s);
}

}  // namespace vaultpad::helpers
