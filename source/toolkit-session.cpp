#include "toolkit-session.h"

#include <Ecore.h>
#include <Evas.h>
#include <signal.h>

#include <array>

namespace vaultpad {

namespace {

// What Ecore takes over when it is initialised, and resets when it is shut down, without giving it back.
constexpr std::array<int, 10> kToolkitSignals = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGUSR1,
                                                 SIGUSR2, SIGCHLD, SIGPIPE, SIGALRM, SIGPWR};

class SignalGuard {
public:
    SignalGuard() {
        for (std::size_t i = 0; i < kToolkitSignals.size(); ++i) {
            sigaction(kToolkitSignals[i], nullptr, &saved_[i]);
        }
    }
    ~SignalGuard() {
        for (std::size_t i = 0; i < kToolkitSignals.size(); ++i) {
            sigaction(kToolkitSignals[i], &saved_[i], nullptr);
        }
    }
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    std::array<struct sigaction, kToolkitSignals.size()> saved_{};
};

}  // namespace

ToolkitSession::ToolkitSession() {
    const SignalGuard guard;
    // Counts only when the client has EFL up already: then its system modules are its own affair.
    if (eina_init() == 1) {
        ecore_app_no_system_modules();
    }
    evas_init();
}

ToolkitSession::~ToolkitSession() {
    const SignalGuard guard;
    evas_shutdown();
    eina_shutdown();
}

}  // namespace vaultpad
