// The application's own tests: the real library, an emulated television for each test, scripted keys. Every picture
// that the secure display showed is kept as evidence/TEST/frame-NNNN.png.
#include "parental-lock.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Keys = std::vector<std::string>;

// From the key 1, where the pad opens: 1, then 2 on its right, 5, 8 and 0 below.
const Keys kTwoFiveEightZero = {"Right", "Return", "Down", "Return", "Down", "Return", "Down", "Return"};

class ParentalLockTest : public testing::Test {
protected:
    void SetUp() override {
        const std::string test = testing::UnitTest::GetInstance()->current_test_info()->name();
        evidence_ = fs::absolute("evidence") / test;
        fs::remove_all(evidence_);
        fs::create_directories(evidence_);
        unsetenv("LANGUAGE");
    }

    // What the emulated television is like, in the form of its key file.
    void useTelevision(const std::string& settings) const {
        const fs::path file = evidence_ / "television.ini";
        std::ofstream(file) << "[log]\ntarget=log.txt\n\n[secure-world]\ndisplay=png\nframes=.\nlog=log.txt\n\n"
                            << settings;
        setenv("VAULTPAD_TELEVISION", file.c_str(), 1);
    }

    static Answer ask(const std::string& pin, const Keys& keys) {
        std::size_t next = 0;
        return ParentalLock(pin).ask([&]() -> std::optional<std::string> {
            return next < keys.size() ? std::optional<std::string>(keys[next++]) : std::nullopt;
        });
    }

    std::size_t pictures() const {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(evidence_)) {
            count += entry.path().extension() == ".png" && fs::file_size(entry.path()) > 0 ? 1 : 0;
        }
        return count;
    }

private:
    fs::path evidence_;
};

TEST_F(ParentalLockTest, UnlocksWithItsPin) {
    useTelevision("");
    EXPECT_EQ(ask("2580", kTwoFiveEightZero), Answer::Unlocked);
    EXPECT_GE(pictures(), kTwoFiveEightZero.size());
}

TEST_F(ParentalLockTest, StaysLockedWithAnotherPin) {
    useTelevision("");
    EXPECT_EQ(ask("2581", kTwoFiveEightZero), Answer::WrongPin);
}

TEST_F(ParentalLockTest, StaysLockedWhenTheViewerLeaves) {
    useTelevision("");
    EXPECT_EQ(ask("2580", {"Right", "Return", "XF86Back"}), Answer::Left);
}

TEST_F(ParentalLockTest, UnlocksOnATurnedTelevisionWithHighContrast) {
    useTelevision("[settings]\nhigh-contrast=1\n\n[orientation]\nrotator=portrait\n");
    EXPECT_EQ(ask("2580", kTwoFiveEightZero), Answer::Unlocked);
    EXPECT_GE(pictures(), kTwoFiveEightZero.size());
}

TEST_F(ParentalLockTest, SaysThatThereIsNoPadWithoutThePrivilege) {
    useTelevision("[privilege]\ndefault=deny\n");
    EXPECT_EQ(ask("2580", kTwoFiveEightZero), Answer::NoPad);
    EXPECT_EQ(pictures(), 0u);
}

TEST_F(ParentalLockTest, StaysLockedWhenTheTrustedApplicationIsMissing) {
    useTelevision("[secure-world]\nexecutable=/nonexistent\n");
    EXPECT_EQ(ask("2580", kTwoFiveEightZero), Answer::NoPad);
}

}  // namespace
