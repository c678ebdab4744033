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

// Puts the dispositions back, and holds the signals up meanwhile: one that arrives belongs to the client's handler.
class SignalGuard {
public:
    SignalGuard() {
        sigset_t signals;
        sigemptyset(&signals);
        for (std::size_t i = 0; i < kToolkitSignals.size(); ++i) {
            sigaddset(&signals, kToolkitSignals[i]);
            sigaction(kToolkitSignals[i], nullptr, &saved_[i]);
        }
        pthread_sigmask(SIG_BLOCK, &signals, &mask_);
    }
    ~SignalGuard() {
        for (std::size_t i = 0; i < kToolkitSignals.size(); ++i) {
            sigaction(kToolkitSignals[i], &saved_[i], nullptr);
        }
        pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
    }
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    std::array<struct sigaction, kToolkitSignals.size()> saved_{};
    sigset_t mask_{};
};

}  // namespace

ToolkitSession::ToolkitSession() {
    const SignalGuard guard;
    // Heeded by the first initialisation only: in a client that has EFL up its modules stay as they are.
    ecore_app_no_system_modules();
    evas_init();
}

ToolkitSession::~ToolkitSession() {
    const SignalGuard guard;
    evas_shutdown();
}

}  // namespace vaultpad
