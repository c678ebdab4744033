// A whole session, from open to decrypted text, through every pad and orientation.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

#include "client.h"
#include "picture.h"
#include "television.h"

namespace {

// From the first key, 1. Surplus moves at an edge do nothing, so Done is reached from anywhere in the last row.
constexpr const char* kType2580OnPinpad = "Right,Return,Down,Return,Down,Return,Down,Return";
constexpr const char* kType2580OnKeyboard = "Right,Return,Right*3,Return,Right*3,Return,Right*2,Return";
constexpr const char* kDone = "Down*6,Right*14,Return";

std::string type2580(int type) {
    return type == VAULTPAD_TYPE_PINPAD ? kType2580OnPinpad : kType2580OnKeyboard;
}

std::vector<Picture> framesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<Picture> frames;
    for (const auto& file : files) {
        frames.push_back(readPng(file));
    }
    return frames;
}

class TypingTest : public testing::TestWithParam<std::tuple<int, std::string, unsigned int>> {};

TEST_P(TypingTest, DecryptsWhatWasTypedWithTheArrowKeys) {
    const auto& [type, orientation, rsaBits] = GetParam();
    Television television;
    television.set("orientation", "rotator", orientation).apply();
    Client client(rsaBits);
    ASSERT_EQ(0, client.open(type)) << television.log();
    const EventResult last = client.pressAll(type2580(type) + "," + kDone);
    EXPECT_EQ(0, last.result);
    EXPECT_EQ(1u, last.closed);
    EXPECT_EQ(4u, last.value);
    EXPECT_EQ("2580", client.decrypt());
    EXPECT_EQ(0, CsapiVPADclose());
}

std::string padName(const testing::TestParamInfo<TypingTest::ParamType>& info) {
    std::string name = std::get<0>(info.param) == VAULTPAD_TYPE_PINPAD ? "Pinpad_" : "Keyboard_";
    name += std::get<1>(info.param) + "_" + std::to_string(std::get<2>(info.param));
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Pads, TypingTest,
                         testing::Combine(testing::Values(VAULTPAD_TYPE_PINPAD, VAULTPAD_TYPE_KEYBOARD),
                                          testing::Values("none", "portrait", "portrait-reversed"),
                                          testing::Values(1024u, 2048u)),
                         padName);

TEST(PinpadSession, CompletesByItselfAtTheNumberOfDigitsThatTheClientAskedFor) {
    Television television;
    television.apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD, 4));
    const EventResult last = client.pressAll(kType2580OnPinpad);
    EXPECT_EQ(1u, last.closed);
    EXPECT_EQ("2580", client.decrypt());
}

TEST(PinpadSession, LeavesNothingToDecryptWhenTheUserGoesBack) {
    Television television;
    television.apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD));
    ASSERT_EQ(0u, client.pressAll(kType2580OnPinpad).closed);
    const EventResult back = client.press("XF86Back");
    EXPECT_EQ(0, back.result);
    EXPECT_EQ(1u, back.closed);
    EXPECT_EQ(0, vault_pad_check_enc_len());
    EXPECT_EQ("", client.decrypt());
}

TEST(PinpadSession, SwallowsAKeyThatNoPadKnows) {
    Television television;
    television.apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD));
    const EventResult unknown = client.press("BackSpace");
    EXPECT_EQ(0, unknown.result);
    EXPECT_EQ(0u, unknown.closed);
    EXPECT_NE(std::string::npos, television.log().find("this key input is not supported : BackSpace"));
}

TEST(PinpadFrames, ShowThePadThenEachMoveAndEachDot) {
    Television television;
    television.set("secure-world", "display", "png")
        .set("secure-world", "frames", television.frames().string())
        .apply();
    Client client;
    ASSERT_EQ(0, client.open(VAULTPAD_TYPE_PINPAD, 4));
    const std::vector<Picture> opened = framesIn(television.frames());
    ASSERT_FALSE(opened.empty());
    client.press("Right");
    const std::vector<Picture> moved = framesIn(television.frames());
    ASSERT_EQ(opened.size() + 1, moved.size());
    // Two keys of about 129 x 61 pixels change their faces, and nothing else does.
    const std::size_t changed = differingPixels(opened.back(), moved.back(), 0);
    EXPECT_GT(changed, 4000u);
    EXPECT_LT(changed, 30000u);
    client.press("Return");
    const std::vector<Picture> typed = framesIn(television.frames());
    ASSERT_EQ(moved.size() + 1, typed.size());
    // One dot, and a dot only: typing must not be told by more than that.
    const std::size_t dot = differingPixels(moved.back(), typed.back(), 0);
    EXPECT_GT(dot, 20u);
    EXPECT_LT(dot, 2000u);
    client.pressAll("Down,Return,Down,Return");
    const std::vector<Picture> three = framesIn(television.frames());
    ASSERT_EQ(typed.size() + 4, three.size());
    // Each dot looks like the one before it, whatever the digit.
    EXPECT_EQ(dot, differingPixels(three[three.size() - 2], three[three.size() - 1], 0));
}

}  // namespace
