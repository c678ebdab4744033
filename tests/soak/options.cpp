#include "options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <random>

namespace vaultpad::soak {

Options readOptions(int argc, char** argv) {
    Options options;
    options.bytesPerSession = VAULTPAD_SOAK_BYTES_PER_SESSION;
    CLI::App parser(
        "Runs session after session in one client, kills and fails what it depends on, checks what was\n"
        "typed, and fails when anything adds up.");
    CLI::Option* sessions = parser.add_option("--sessions", options.sessions, "how many sessions, after the warm-up");
    parser.add_option("--minutes", options.minutes, "how long, the warm-up included (10)")
        ->excludes(sessions)
        ->check(CLI::PositiveNumber);
    parser.add_option("--seed", options.seed, "repeats the plans of the run that printed this seed");
    parser.add_option("--layouts", options.layouts, "so many layouts, chosen by the seed (all)");
    parser.add_option("--languages", options.languages, "so many languages, chosen by the seed (all)");
    parser.add_option("--growth", options.bytesPerSession, "bytes of growth allowed per session; 0: not judged")
        ->capture_default_str();
    parser.add_option("--leak", options.leak, "loses so many bytes in each session, to see that the soak notices");
    try {
        parser.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        std::exit(parser.exit(error));
    }
    if (options.seed == 0) {
        options.seed = std::random_device()();
    }
    return options;
}

}  // namespace vaultpad::soak
