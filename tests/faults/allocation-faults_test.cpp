// Every allocation that the library asks for fails once, in every form of a session: the client gets a failure code and
// the log a line, or std::bad_alloc where an entry point lets other exceptions pass; and the next session works.
#include <Evas.h>

#include <algorithm>
#include <iostream>

#include "allocation-seam.h"
#include "whole-session.h"

namespace vaultpad::test {

namespace {

bool isAFailure(const StepOutcome& step, const StepOutcome& asEver) {
    const bool refused = step.result == -1 || (step.result == 0 && asEver.result != -1);
    return refused && (step.step != "decrypt" || step.detail.empty());
}

}  // namespace

class AllocationFaults : public WholeSessionTest, public testing::WithParamInterface<SessionKind> {
protected:
    AllocationFaults() : good(run(GetParam())) {}

    int allocationsOfASession() {
        const AllocationWatch watch(0);
        EXPECT_EQ(run(GetParam()), good);
        return watch.counted();
    }

    /* The session with the nth allocation failing, and then one in which none does. Returns whether there was an nth.
     */
    bool failOnce(int nth) {
        SCOPED_TRACE("failing: allocation " + std::to_string(nth));
        bool failed = false;
        Outcome outcome;
        {
            const AllocationWatch watch(nth);
            outcome = run(GetParam());
            failed = watch.hasFailed();
        }
        expectFailures(outcome);
        closeWhatIsLeft();
        shutDownWhatTheRendererDoesNot(outcome);
        EXPECT_EQ(platform().context, nullptr) << "the channel's context is left over";
        EXPECT_EQ(run(GetParam()), good) << "the next session is not as ever";
        return failed;
    }

    /* A renderer that gets no pixels does not take back its initialisation of Evas, which is intended. */
    static void shutDownWhatTheRendererDoesNot(const Outcome& outcome) {
        const std::string error = "[vaultpad]: ERROR: could not allocate canvas_ pixels!";
        for (const StepOutcome& step : outcome) {
            if (std::count(step.errors.begin(), step.errors.end(), error) != 0) {
                evas_shutdown();
            }
        }
    }

    void expectFailures(const Outcome& outcome) {
        bool reported = false;
        ASSERT_EQ(outcome.size(), good.size());
        for (std::size_t i = 0; i < outcome.size(); ++i) {
            const StepOutcome& step = outcome[i];
            EXPECT_TRUE(!step.outOfMemory || step.step == "create") << step;
            reported = reported || step.outOfMemory || !step.errors.empty();
            const bool asEver = step.result == good[i].result && step.detail == good[i].detail;
            EXPECT_TRUE(asEver || (reported && (step.outOfMemory || isAFailure(step, good[i])))) << step;
            thrown += step.outOfMemory ? 1 : 0;
        }
    }

    const Outcome good;
    int thrown = 0;
};

TEST_P(AllocationFaults, EachAllocationFailsOnceIsReportedAndTheNextSessionWorks) {
    const int count = allocationsOfASession();
    ASSERT_GT(count, 100) << "the allocations of a session are not seen";
    int failed = 0;
    while (failOnce(failed + 1)) {
        ++failed;
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GE(failed, count);
    std::cout << GetParam().name << ": " << failed << " allocations failed one by one, " << 2 * failed
              << " sessions survived, std::bad_alloc reached the client from " << thrown << "\n";
}

INSTANTIATE_TEST_SUITE_P(, AllocationFaults, testing::ValuesIn(sessionKinds()), CaseName());

}  // namespace vaultpad::test
