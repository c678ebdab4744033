/* The television that the benchmarks run on: quiet, without a display, with the build's resources. */
#ifndef VAULTPAD_BENCH_SUPPORT_TELEVISION_H
#define VAULTPAD_BENCH_SUPPORT_TELEVISION_H

#include <string>

namespace vaultpad::bench {

/* Which of the 32 layouts. */
struct Look {
    int type = 1; /* 1 PIN pad, 2 keyboard */
    bool portrait = false;
    bool mirrored = false;
    bool enlarged = false;
    bool highContrast = false;
};

/* The layout's file name without its ending. */
std::string nameOf(const Look& look);

/* Writes the television's key file, which goes with the process, and points VAULTPAD_TELEVISION at it. */
void useTelevision(const Look& look = {});

}  // namespace vaultpad::bench

#endif
