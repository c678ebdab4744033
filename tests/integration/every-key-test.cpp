// Every key of every layout, by the remote control's keys alone.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <tuple>
#include <vector>

#include "client.h"
#include "decoded-text.h"
#include "pad-walk.h"
#include "television.h"

namespace {

using vaultpad::secureworld::KeyAction;
using vaultpad::secureworld::PadKey;

// Type, orientation, mirrored, focus zoom, high contrast.
using Layout = std::tuple<int, std::string, bool, bool, bool>;

constexpr std::size_t kTextMax = VAULTPAD_TEXT_LENGTH_MAX;

class EveryKey : public testing::TestWithParam<Layout> {
protected:
    void SetUp() override {
        const auto& [type, orientation, mirrored, zoom, contrast] = GetParam();
        type_ = type;
        television_.set("orientation", "rotator", orientation)
            .set("orientation", "mirrored", mirrored ? "true" : "false")
            .set("settings", "focus-zoom", zoom ? "1" : "0")
            .set("settings", "high-contrast", contrast ? "1" : "0")
            .set("secure-world", "store", television_.store().string())
            .apply();
        ASSERT_EQ(0, client_.open(type_)) << television_.log();
        walk_.emplace(television_.store(), type == VAULTPAD_TYPE_PINPAD, orientation == "portrait" ? 1 : 0);
    }

    std::vector<std::size_t> keysThat(KeyAction::Kind kind) const {
        std::vector<std::size_t> keys;
        for (std::size_t i = 0; i < walk_->keys().size(); ++i) {
            if (walk_->keys()[i].action.kind == kind) {
                keys.push_back(i);
            }
        }
        return keys;
    }

    EventResult press(std::size_t key) {
        const std::optional<std::string> way = walk_->press(key);
        EXPECT_TRUE(way.has_value()) << "no way leads to key " << key;
        return way ? client_.pressAll(*way) : EventResult{-1, 0, 1};
    }

    void reopen() {
        ASSERT_EQ(0, CsapiVPADclose());
        ASSERT_EQ(0, client_.open(type_));
        walk_->restart();
    }

    int type_ = 0;
    Television television_;
    Client client_{1024};
    std::optional<PadWalk> walk_;
};

TEST_P(EveryKey, TypesItsCharacterAndTheTextDecrypts) {
    const std::vector<std::size_t> characters = keysThat(KeyAction::Kind::Type);
    const std::size_t done = keysThat(KeyAction::Kind::Complete).at(0);
    ASSERT_GE(characters.size(), type_ == VAULTPAD_TYPE_PINPAD ? 10u : 95u);
    for (std::size_t start = 0; start < characters.size(); start += kTextMax) {
        if (start > 0) {
            reopen();
        }
        std::u16string typed;
        const std::size_t end = std::min(start + kTextMax, characters.size());
        for (std::size_t i = start; i < end; ++i) {
            ASSERT_EQ(0, press(characters[i]).result);
            typed += walk_->keys()[characters[i]].action.character;
        }
        ASSERT_EQ(1u, press(done).closed);
        EXPECT_EQ(decodedText(typed), client_.decrypt());
    }
}

TEST_P(EveryKey, TakesBackClearsAndCancels) {
    const std::vector<std::size_t> characters = keysThat(KeyAction::Kind::Type);
    for (const auto& [kind, left] :
         {std::pair(KeyAction::Kind::TakeBack, std::size_t{1}), std::pair(KeyAction::Kind::Clear, std::size_t{0})}) {
        press(characters[0]);
        press(characters[1]);
        press(keysThat(kind).at(0));
        press(characters[2]);
        ASSERT_EQ(1u, press(keysThat(KeyAction::Kind::Complete).at(0)).closed);
        std::u16string typed;
        if (left == 1) {
            typed += walk_->keys()[characters[0]].action.character;
        }
        typed += walk_->keys()[characters[2]].action.character;
        EXPECT_EQ(decodedText(typed), client_.decrypt());
        reopen();
    }
    press(characters[0]);
    EXPECT_EQ(1u, press(keysThat(KeyAction::Kind::Cancel).at(0)).closed);
    EXPECT_EQ(0, vault_pad_check_enc_len());
}

std::string layoutName(const testing::TestParamInfo<Layout>& info) {
    const auto& [type, orientation, mirrored, zoom, contrast] = info.param;
    return std::string(type == VAULTPAD_TYPE_PINPAD ? "Pinpad" : "Keyboard") +
           (orientation == "none" ? "" : "Vertical") + (mirrored ? "Reverse" : "") + (zoom ? "Zoom" : "") +
           (contrast ? "Contrast" : "");
}

INSTANTIATE_TEST_SUITE_P(OfEachLayout, EveryKey,
                         testing::Combine(testing::Values(VAULTPAD_TYPE_PINPAD, VAULTPAD_TYPE_KEYBOARD),
                                          testing::Values("none", "portrait"), testing::Bool(), testing::Bool(),
                                          testing::Bool()),
                         layoutName);

}  // namespace
