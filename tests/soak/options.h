/* The command line of the soak. */
#ifndef VAULTPAD_TESTS_SOAK_OPTIONS_H
#define VAULTPAD_TESTS_SOAK_OPTIONS_H

#include <cstddef>
#include <cstdint>

namespace vaultpad::soak {

struct Options {
    std::size_t sessions = 0; /* 0: as many as the minutes allow */
    double minutes = 10;
    std::uint64_t seed = 0;     /* 0: one of its own */
    std::size_t layouts = 0;    /* 0: all */
    std::size_t languages = 0;  /* 0: all */
    double bytesPerSession = 0; /* allowed growth of the memory; 0: not judged */
    std::size_t leak = 0;       /* bytes lost on purpose in each session */
};

/* Ends the program after --help and after a mistake. */
Options readOptions(int argc, char** argv);

}  // namespace vaultpad::soak

#endif
