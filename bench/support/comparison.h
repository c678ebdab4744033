/*
 * Comparisons: how fast something is beside a yardstick that does the same amount of work in the same process.
 *
 * Machine and load change times and hardly change their ratio, so the ratio is what a gate holds. Both are called in
 * turns, nine times, and the best time of each counts: what disturbs a run only ever adds to it. The turns are some
 * time apart, so that one disturbance does not meet them all.
 */
#ifndef VAULTPAD_BENCH_SUPPORT_COMPARISON_H
#define VAULTPAD_BENCH_SUPPORT_COMPARISON_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <string>
#include <thread>
#if __has_include(<valgrind/callgrind.h>)
#include <valgrind/callgrind.h>
#else
#define CALLGRIND_TOGGLE_COLLECT
#endif

namespace vaultpad::bench {

/* Everything runs once: a test that the benchmarks run, or a count of instructions. */
inline bool runsOnce() {
    return std::getenv("VAULTPAD_BENCH_ONCE") != nullptr;
}

/* What is compared, and with what. */
struct Comparison {
    std::string name;
    std::string yardstick;   /* in words, for the table */
    double ratioAtLeast = 0; /* the gate: the yardstick's time divided by the subject's; 0: none */
    const char* item = "";   /* what one call works on, for instance "pixel"; "": its instructions are not counted */
    double items = 0;        /* and how many of them */
};

template <typename Call>
double secondsPerCall(Call& call, int calls) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < calls; ++i) {
        call();
        benchmark::ClobberMemory();
    }
    return std::chrono::duration<double>(Clock::now() - start).count() / calls;
}

/* As many calls as take about half a millisecond: long for the clock, short beside what disturbs them. */
template <typename Call>
int callsPerTurn(Call& call) {
    constexpr double kTurnSeconds = 0.0005;
    constexpr int kMost = 1 << 20;
    int calls = 1;
    while (!runsOnce() && calls < kMost && secondsPerCall(call, calls) * calls < kTurnSeconds) {
        calls *= 2;
    }
    return calls;
}

template <typename Subject, typename Yardstick>
void runComparison(benchmark::State& state, const Comparison& comparison, Subject& subject, Yardstick& yardstick) {
    const int turns = runsOnce() ? 1 : 9;
    const std::chrono::milliseconds pause(runsOnce() ? 0 : 20);
    const int subjectCalls = callsPerTurn(subject);
    const int yardstickCalls = callsPerTurn(yardstick);
    double subjectBest = std::numeric_limits<double>::max();
    double yardstickBest = subjectBest;
    for ([[maybe_unused]] auto once : state) {
        for (int turn = 0; turn < turns; ++turn) {
            std::this_thread::sleep_for(pause);
            // Not counted: neither is to be the one that finds caches and clock as the pause left them.
            secondsPerCall(yardstick, yardstickCalls);
            secondsPerCall(subject, subjectCalls);
            yardstickBest = std::min(yardstickBest, secondsPerCall(yardstick, yardstickCalls));
            subjectBest = std::min(subjectBest, secondsPerCall(subject, subjectCalls));
        }
        state.SetIterationTime(subjectBest);
    }
    CALLGRIND_TOGGLE_COLLECT;
    subject();
    CALLGRIND_TOGGLE_COLLECT;
    state.SetLabel(comparison.yardstick);
    state.counters["ratio"] = yardstickBest / subjectBest;
    if (comparison.ratioAtLeast > 0) {
        state.counters["ratio_at_least"] = comparison.ratioAtLeast;
    }
    if (comparison.item[0] != '\0') {
        state.counters[std::string("count_of_") + comparison.item] = comparison.items;
    }
}

/* Registers a comparison; both calls must leave their result where the compiler cannot know it unread. */
template <typename Subject, typename Yardstick>
void compare(const Comparison& comparison, Subject subject, Yardstick yardstick) {
    benchmark::RegisterBenchmark(
        comparison.name.c_str(),
        [=](benchmark::State& state) mutable { runComparison(state, comparison, subject, yardstick); })
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMicrosecond);
}

}  // namespace vaultpad::bench

#endif
