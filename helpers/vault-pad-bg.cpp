// The background helper: runs from the start-up of a pad until it is shown, with the kind of pad and the state of the
// voice connection as its arguments. It holds the loading indicator until its end: SIGTERM, or the end of the process
// that started it (on the television and here, as a rule, SIGKILL).
#include <cstdio>
#include <string_view>

#include "end-watch.h"
#include "loading-indicator.h"

namespace {

constexpr int kWrongUse = 2;
constexpr int kFailure = 1;
constexpr std::chrono::milliseconds kForEver{-1};

bool isOneOf(std::string_view word, std::string_view first, std::string_view second) {
    return word == first || word == second;
}

}  // namespace

int main(int argc, char** argv) {
    using namespace vaultpad::helpers;
    if (argc != 3 || !isOneOf(argv[1], "keyboard", "numpad") || !isOneOf(argv[2], "connect", "disconnect")) {
        std::fprintf(stderr, "vault-pad-bg: usage: vault-pad-bg keyboard|numpad connect|disconnect\n");
        return kWrongUse;
    }
    const EndWatch watch;
    if (!watch.works()) {
        return kFailure;
    }
    const LoadingIndicator indicator(argv[1], argv[2]);
    watch.endsWithin(kForEver);
    return 0;
}
