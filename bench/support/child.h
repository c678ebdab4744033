/*
 * Measurements of what happens once in a process's life: taken in a forked child, so that the next one starts afresh.
 *
 * The parent must not have used what is measured: its libraries are loaded, nothing is initialised.
 */
#ifndef VAULTPAD_BENCH_SUPPORT_CHILD_H
#define VAULTPAD_BENCH_SUPPORT_CHILD_H

#include <benchmark/benchmark.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <vector>

#include "comparison.h"

namespace vaultpad::bench {

using Clock = std::chrono::steady_clock;

inline double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/* What the calling thread has computed, in milliseconds: for work that waits for nothing. */
inline double threadMilliseconds() {
    timespec used = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

/* Calls measure() in a child and returns the figures that it returns. Throws std::runtime_error when that fails. */
template <typename Measure>
std::vector<double> inChild(Measure&& measure) {
    int ends[2];
    if (pipe(ends) != 0) {
        throw std::runtime_error("no pipe for a child's figures");
    }
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        int status = 1;
        try {
            const std::vector<double> figures = measure();
            const std::size_t size = figures.size() * sizeof(double);
            status = write(ends[1], figures.data(), size) == static_cast<ssize_t>(size) ? 0 : 1;
        } catch (const std::exception& error) {
            std::fprintf(stderr, "%s\n", error.what());
        }
        _exit(status);
    }
    close(ends[1]);
    constexpr std::size_t kMost = 512;
    std::vector<double> figures(kMost);
    std::size_t bytes = 0;
    ssize_t count = 0;
    while ((count = read(ends[0], reinterpret_cast<char*>(figures.data()) + bytes, kMost * sizeof(double) - bytes)) >
           0) {
        bytes += static_cast<std::size_t>(count);
    }
    close(ends[0]);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("the measuring child failed");
    }
    figures.resize(bytes / sizeof(double));
    return figures;
}

/*
 * The least of each figure over several children: what disturbs a run only ever adds to it. The children of each
 * measurement take turns with those of the others, so that one disturbance meets them all.
 */
template <typename... Measures>
std::array<std::vector<double>, sizeof...(Measures)> bestInTurns(int children, Measures&&... measures) {
    std::array<std::vector<double>, sizeof...(Measures)> best = {inChild(measures)...};
    for (int i = 1; i < (runsOnce() ? 1 : children); ++i) {
        auto mine = best.begin();
        for (const std::vector<double>& figures : {inChild(measures)...}) {
            std::transform(mine->begin(), mine->end(), figures.begin(), mine->begin(),
                           [](double left, double right) { return std::min(left, right); });
            ++mine;
        }
    }
    return best;
}

template <typename Measure>
std::vector<double> bestInChildren(Measure&& measure, int children = 9) {
    return bestInTurns(children, measure)[0];
}

/* A benchmark that runs its own repetitions: run(state) sets the iteration time. */
template <typename Run>
void registerOnce(const char* name, Run run) {
    benchmark::RegisterBenchmark(name,
                                 [run](benchmark::State& state) {
                                     for ([[maybe_unused]] auto once : state) {
                                         try {
                                             run(state);
                                         } catch (const std::exception& error) {
                                             state.SkipWithError(error.what());
                                         }
                                     }
                                 })
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
}

}  // namespace vaultpad::bench

#endif
