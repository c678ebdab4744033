/* The stages between a client's call and the shown pad, as a trace of the platform's calls tells them. */
#ifndef VAULTPAD_BENCH_SUPPORT_STAGES_H
#define VAULTPAD_BENCH_SUPPORT_STAGES_H

#include <cstdint>
#include <string>
#include <vector>

namespace vaultpad::bench {

/* Points VAULTPAD_TRACE at a file of its own, which goes with the object; a process's first call fixes the file. */
class Trace {
public:
    Trace();
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    /*
     * The milliseconds of each stage, in the order of stageNames(), the first one from `start` in microseconds of
     * CLOCK_MONOTONIC. Throws std::runtime_error when the pad was not shown.
     */
    std::vector<double> stages(std::int64_t start) const;

private:
    std::string path_;
};

const std::vector<std::string>& stageNames();

std::int64_t monotonicMicroseconds();

}  // namespace vaultpad::bench

#endif
