// Every call to the platform fails once, in every form of a session: what follows is what the table says, nothing stays
// behind that should not, and the next session is as good as ever.
#include <algorithm>
#include <iostream>
#include <map>

#include "expected-fault.h"

namespace vaultpad::test {

namespace {

constexpr const char* kNoSession = "[vaultpad]: No VaultPad session was started";
constexpr const char* kReceiverEnded = "[TUI NWD] Failed to open voice socket";
constexpr const char* kNoBlock = "tzfw_core_create_shared_memory() fail";

std::string functionOf(const std::string& call) {
    return call.substr(0, call.find('('));
}

StepOutcome withoutSession(StepOutcome step) {
    static const std::map<std::string, int> results = {{"decrypt", 0}, {"pressed", 0},   {"closed", 0}, {"create", -1},
                                                       {"params", -1}, {"complete", -1}, {"close", -1}};
    const auto found = results.find(step.step);
    step.result = found != results.end() ? found->second : -1;
    step.errors = step.step == "decrypt" ? Strings{} : Strings{kNoSession};
    step.detail = step.detail == "" || step.step == "decrypt" ? "" : "9 9";
    return step;
}

StepOutcome withoutChannel(StepOutcome step) {
    if (step.step == "params" || step.step == "Up" || step.step == "Return") {
        step.result = -1;
        step.errors = {kNoBlock};
    } else if (step.step == "complete" || step.step == "closed") {
        step.result = 0;
    } else if (step.step == "decrypt") {
        step.detail = "";
    }
    return step;
}

StepOutcome withoutResult(StepOutcome step, bool closedSeen) {
    if (step.step == "complete") {
        step.result = 0;
    } else if (step.step == "closed") {
        step.result = closedSeen ? 1 : 0;
    } else if (step.step == "decrypt") {
        step.detail = "";
    }
    return step;
}

StepOutcome laterStep(const StepOutcome& asEver, const Expectation& expected) {
    switch (expected.after) {
        case After::WithoutSession:
            return withoutSession(asEver);
        case After::WithoutChannel:
            return withoutChannel(asEver);
        case After::WithoutResult:
            return withoutResult(asEver, expected.closedSeen);
        default:
            return asEver;
    }
}

}  // namespace

class PlatformFaults : public WholeSessionTest, public testing::WithParamInterface<SessionKind> {
protected:
    PlatformFaults() : good(run(GetParam())), journal(platform().journal()), steps(stepOfCall()) {}

    /* The session with the call failing, and then one in which everything works. */
    void failOnce(std::size_t index) {
        const std::string function = functionOf(journal[index]);
        int nth = 0;
        for (std::size_t i = 0; i <= index; ++i) {
            nth += functionOf(journal[i]) == function ? 1 : 0;
        }
        SCOPED_TRACE("failing: " + journal[index] + ", call " + std::to_string(nth) + " of its function");
        const Outcome outcome = run(GetParam(), [&] {
            platform().fail(function, nth);
            hasVoiceMaker = function != "fork" || nth != 2;
        });
        const Expectation expected = expectationOf({GetParam(), journal, steps, index});
        expectOutcome(outcome, expected, steps[index]);
        expectUnreleased(expected);
        closeWhatIsLeft();
        EXPECT_EQ(platform().context, nullptr) << "the channel's context is left over";
        EXPECT_EQ(run(GetParam()), good) << "the next session is not as ever";
    }

    void expectOutcome(const Outcome& outcome, const Expectation& expected, const std::string& failing) const {
        bool failed = false;
        ASSERT_EQ(outcome.size(), good.size());
        for (std::size_t i = 0; i < outcome.size(); ++i) {
            if (outcome[i].step == failing) {
                failed = true;
                expectFailure(outcome[i], good[i], expected);
            } else {
                StepOutcome step = outcome[i];
                if (expected.abandoned) {
                    step.errors.erase(std::remove(step.errors.begin(), step.errors.end(), kReceiverEnded),
                                      step.errors.end());
                }
                EXPECT_EQ(step, failed ? laterStep(good[i], expected) : good[i]);
            }
        }
    }

    static void expectFailure(const StepOutcome& step, const StepOutcome& asEver, const Expectation& expected) {
        EXPECT_EQ(step.result, expected.result.value_or(asEver.result));
        EXPECT_FALSE(step.outOfMemory);
        if (expected.unreadable) {
            EXPECT_NE(step.detail, kTypedText);
        } else {
            EXPECT_EQ(step.detail, expected.detail.value_or(asEver.detail));
        }
        if (expected.furtherErrors) {
            for (const std::string& error : expected.errors) {
                EXPECT_THAT(step.errors, testing::Contains(testing::StartsWith(error)));
            }
        } else {
            EXPECT_THAT(step.errors, testing::UnorderedElementsAreArray(expected.errors));
        }
    }

    static void expectUnreleased(const Expectation& expected) {
        const auto& blocks = platform().blocks;
        EXPECT_EQ(static_cast<std::size_t>(
                      std::count_if(blocks.begin(), blocks.end(), [](const auto& block) { return !block->released; })),
                  expected.unreleased);
    }

    const Outcome good;
    const Strings journal;
    const Strings steps;
};

TEST_P(PlatformFaults, EachCallFailsOnceAsSpecifiedAndTheNextSessionWorks) {
    ASSERT_EQ(run(GetParam()), good) << "two sessions without a failure differ";
    for (std::size_t index = 0; index < journal.size(); ++index) {
        failOnce(index);
        if (HasFatalFailure()) {
            return;
        }
    }
    RecordProperty("callsFailedOneByOne", static_cast<int>(journal.size()));
    std::cout << GetParam().name << ": " << journal.size() << " calls failed one by one, " << 2 * journal.size()
              << " sessions survived\n";
}

INSTANTIATE_TEST_SUITE_P(, PlatformFaults, testing::ValuesIn(sessionKinds()), CaseName());

TEST_P(PlatformFaults, SessionWithoutAFailureHandsOutTheTypedText) {
    const auto decrypt =
        std::find_if(good.begin(), good.end(), [](const StepOutcome& step) { return step.step == "decrypt"; });
    EXPECT_EQ(decrypt->detail, kTypedText);
}

}  // namespace vaultpad::test
