// A pad with the voice guide on opens and works, whatever another process sends to the guide. VAULTPAD_HOSTILE_SECONDS
// makes each of the tests that long.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "audio/voice-guide.h"
#include "client.h"
#include "helper-process.h"
#include "television.h"

namespace vaultpad::test {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// Rendering, the trusted application's start and a busy machine come on top of the waiting.
constexpr auto kMargin = 6s;

std::chrono::seconds duration() {
    const char* seconds = std::getenv("VAULTPAD_HOSTILE_SECONDS");
    return seconds != nullptr ? std::chrono::seconds(std::atoi(seconds)) : 3s;
}

class HostileClient : public testing::TestWithParam<const char*> {
protected:
    HostileClient() {
        audio::VoiceGuide::waitLimit = 1500ms;
        television_.apply();
    }
    ~HostileClient() override { audio::VoiceGuide::waitLimit = 30s; }

    Television television_;
    Client client_;
};

}  // namespace

TEST_P(HostileClient, LeavesThePadOpeningInTimeAndTyping) {
    const HelperProcess hostile(television_.folder(), VAULTPAD_HOSTILE_CLIENT, {GetParam()});
    const auto begin = Clock::now();
    int pads = 0;
    do {
        const auto start = Clock::now();
        ASSERT_EQ(client_.open(VAULTPAD_TYPE_PINPAD, 1), 0);
        EXPECT_LT(Clock::now() - start, audio::VoiceGuide::waitLimit + kMargin);
        const EventResult typed = client_.press("Return");
        EXPECT_EQ(typed.result, 0);
        EXPECT_EQ(typed.closed, 1u);
        EXPECT_EQ(client_.decrypt(), "1");
        CsapiVPADclose();
        EXPECT_LT(Clock::now() - start, 2 * kMargin);
        ++pads;
    } while (Clock::now() < begin + duration());
    const std::chrono::duration<double> seconds = Clock::now() - begin;
    std::cout << GetParam() << ": " << pads << " pads in " << seconds.count() << " seconds\n";
    EXPECT_EQ(kill(hostile.pid(), 0), 0) << "the hostile client ended: " << hostile.output();
}

INSTANTIATE_TEST_SUITE_P(, HostileClient, testing::Values("anything", "endless", "silent"),
                         [](const auto& tested) { return std::string(tested.param); });

}  // namespace vaultpad::test
