// The helpers as processes: their arguments, what they do, and how they end.
#include "helper-process.h"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

#include "clip-receiver.h"
#include "languages.h"
#include "processes.h"
#include "television.h"
#include "voice-maker/voice-list.h"

namespace vaultpad::test {

namespace {

using testing::HasSubstr;
using testing::SizeIs;
using Arguments = std::vector<std::string>;

using Clock = std::chrono::steady_clock;

constexpr int kWrongUse = 2;
constexpr std::chrono::seconds kSoon{2};

class HelperProcessTest : public testing::Test {
protected:
    HelperProcessTest() { television_.apply(); }

    std::unique_ptr<HelperProcess> run(const char* program, const Arguments& arguments) {
        return std::make_unique<HelperProcess>(television_.folder(), program, arguments);
    }

    /* A process that starts the helper and ends when it is told to; returns the helper's id. */
    pid_t startBySomeoneWhoDies(const char* program, const Arguments& arguments) {
        int ends[2];
        EXPECT_EQ(pipe(ends), 0);
        const pid_t starter = fork();
        if (starter == 0) {
            const HelperProcess helper(television_.folder(), program, arguments);
            const pid_t pid = helper.pid();
            (void)!write(ends[1], &pid, sizeof(pid));
            // Long enough for the helper to have begun; it is not killed, its starter just goes.
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            _exit(0);
        }
        pid_t helper = -1;
        EXPECT_EQ(read(ends[0], &helper, sizeof(helper)), static_cast<ssize_t>(sizeof(helper)));
        waitpid(starter, nullptr, 0);
        close(ends[0]);
        close(ends[1]);
        return helper;
    }

    /* What the indicator of the background helper shows; waits until it does. */
    static std::string indicatorOf(pid_t pid) {
        for (int attempt = 0; attempt < 500; ++attempt) {
            std::error_code ignored;
            for (const auto& file :
                 std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd", ignored)) {
                if (read_symlink(file.path(), ignored).string().find("vaultpad-loading") != std::string::npos) {
                    std::ifstream shown(file.path());
                    std::string line;
                    if (std::getline(shown, line)) {
                        return line;
                    }
                }
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return "";
    }

    Television television_;
};

}  // namespace

TEST_F(HelperProcessTest, VoiceMakerDeliversOneWavFileForEachItem) {
    for (const auto& [type, count] : {std::pair("1", 15u), {"2", 108u}}) {
        const ClipReceiver receiver;
        const auto maker = run(VAULTPAD_VOICE_MAKER, {"vaultpad", type});
        const auto clips = receiver.clips(count);
        EXPECT_THAT(clips, SizeIs(count));
        for (const auto& [index, clip] : clips) {
            EXPECT_EQ(helpers::completeWave(clip), clip) << index;
            EXPECT_GT(clip.size(), 4410u) << index;
        }
        EXPECT_EQ(maker->exitStatus(), 0) << maker->output();
        EXPECT_EQ(maker->output(), "");
    }
}

TEST_F(HelperProcessTest, VoiceMakerSpeaksTheMenuLanguage) {
    useBuiltLocales();
    const auto clipsIn = [this](const char* locale) {
        television_.set("settings", "language", locale).apply();
        const ClipReceiver receiver;
        const auto maker = run(VAULTPAD_VOICE_MAKER, {"vaultpad", "1"});
        return receiver.clips(15);
    };
    EXPECT_NE(clipsIn("de_DE.UTF-8"), clipsIn("C.UTF-8"));
}

TEST_F(HelperProcessTest, VoiceMakerWithoutASynthesiserDeliversEmptyClips) {
    const std::string path = getenv("PATH");
    setenv("PATH", television_.folder().c_str(), 1);
    const ClipReceiver receiver;
    const auto maker = run(VAULTPAD_VOICE_MAKER, {"vaultpad", "1"});
    const auto clips = receiver.clips(15);
    setenv("PATH", path.c_str(), 1);
    EXPECT_THAT(clips, SizeIs(15));
    EXPECT_THAT(clips, testing::Each(testing::Pair(testing::_, testing::IsEmpty())));
    EXPECT_EQ(maker->exitStatus(), 0);
    EXPECT_THAT(maker->output(), HasSubstr("install the package espeak-ng"));
}

TEST_F(HelperProcessTest, VoiceMakerRefusesWrongArguments) {
    for (const Arguments& arguments :
         {Arguments{}, {"vaultpad"}, {"vaultpad", "1", "2"}, {"other", "1"}, {"vaultpad", "one"}, {"vaultpad", ""}}) {
        const auto maker = run(VAULTPAD_VOICE_MAKER, arguments);
        EXPECT_EQ(maker->exitStatus(), kWrongUse);
        EXPECT_THAT(maker->output(), HasSubstr("usage: vault-voice-maker"));
    }
}

TEST_F(HelperProcessTest, VoiceMakerSaysHowItIsUsed) {
    const auto maker = run(VAULTPAD_VOICE_MAKER, {"--help"});
    EXPECT_EQ(maker->exitStatus(), 0);
    EXPECT_THAT(maker->output(), HasSubstr("usage: vault-voice-maker vaultpad TYPE"));
}

TEST_F(HelperProcessTest, VoiceMakerNamesTheVoiceFileThatIsMissing) {
    television_.set("paths", "application-root", television_.folder().string()).apply();
    const auto maker = run(VAULTPAD_VOICE_MAKER, {"vaultpad", "2"});
    EXPECT_EQ(maker->exitStatus(), 1);
    EXPECT_THAT(maker->output(), HasSubstr("vaultpad/res/xml/audio/keyboard-audio.xml"));
}

TEST_F(HelperProcessTest, VoiceMakerEndsAtATerminationSignal) {
    const auto maker = run(VAULTPAD_VOICE_MAKER, {"vaultpad", "2"});
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    kill(maker->pid(), SIGTERM);
    const auto start = Clock::now();
    EXPECT_EQ(maker->exitStatus(), 1);
    // Well before it would give up by itself.
    EXPECT_LT(Clock::now() - start, kSoon);
}

TEST_F(HelperProcessTest, VoiceMakerEndsWithItsStarter) {
    const pid_t maker = startBySomeoneWhoDies(VAULTPAD_VOICE_MAKER, {"vaultpad", "2"});
    const auto start = Clock::now();
    EXPECT_TRUE(endsSoon(maker));
    EXPECT_LT(Clock::now() - start, kSoon);
}

TEST_F(HelperProcessTest, BackgroundHelperShowsTheLoadingIndicatorUntilTermination) {
    const auto helper = run(VAULTPAD_BACKGROUND_HELPER, {"keyboard", "disconnect"});
    EXPECT_EQ(indicatorOf(helper->pid()), "loading keyboard, voice disconnect");
    kill(helper->pid(), SIGTERM);
    EXPECT_EQ(helper->exitStatus(), 0);
}

TEST_F(HelperProcessTest, BackgroundHelperRefusesWrongArguments) {
    for (const Arguments& arguments :
         {Arguments{}, {"numpad"}, {"numpad", "connect", "x"}, {"pinpad", "connect"}, {"numpad", "maybe"}}) {
        const auto helper = run(VAULTPAD_BACKGROUND_HELPER, arguments);
        EXPECT_EQ(helper->exitStatus(), kWrongUse);
        EXPECT_THAT(helper->output(), HasSubstr("usage: vault-pad-bg"));
    }
}

TEST_F(HelperProcessTest, BackgroundHelperEndsWithItsStarter) {
    EXPECT_TRUE(endsSoon(startBySomeoneWhoDies(VAULTPAD_BACKGROUND_HELPER, {"numpad", "connect"})));
}

}  // namespace vaultpad::test
