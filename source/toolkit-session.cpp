#include "toolkit-session.h"

#include <Ecore.h>
#include <Efreet.h>
#include <Elementary.h>
#include <Evas.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "wayland-objects.h"

namespace vaultpad {

namespace {

// What Ecore takes over when it is initialised, and resets when it is shut down, without giving it back.
constexpr std::array<int, 10> kToolkitSignals = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGUSR1,
                                                 SIGUSR2, SIGCHLD, SIGPIPE, SIGALRM, SIGPWR};

// Puts the dispositions back, and the mask of this thread. Nothing is held up meanwhile: Ecore unblocks its signals as
// soon as it has its handlers and before it has the pipe that they write to, so that whatever had waited would be lost
// to the client. The shorter one of these lives, the less can arrive in it.
class SignalGuard {
public:
    SignalGuard() {
        for (std::size_t i = 0; i < kToolkitSignals.size(); ++i) {
            sigaction(kToolkitSignals[i], nullptr, &saved_[i]);
        }
        pthread_sigmask(SIG_SETMASK, nullptr, &mask_);
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

// Without a usable runtime folder EFL makes one in the client's home, and ends the process where it cannot. Nothing
// here needs one, so for the time of the initialisation the temporary folder stands in. Changing the environment is no
// business of a library with threads around, hence only where the process would end or a folder appear in the client's
// home.
class RuntimeFolderGuard {
public:
    RuntimeFolderGuard() {
        const char* folder = std::getenv(kVariable);
        if (folder != nullptr && access(folder, R_OK | W_OK | X_OK) == 0) {
            return;
        }
        replaced_ = true;
        wasSet_ = folder != nullptr;
        saved_ = wasSet_ ? folder : "";
        setenv(kVariable, P_tmpdir, 1);
    }
    ~RuntimeFolderGuard() {
        if (replaced_ && wasSet_) {
            setenv(kVariable, saved_.c_str(), 1);
        } else if (replaced_) {
            unsetenv(kVariable);
        }
    }
    RuntimeFolderGuard(const RuntimeFolderGuard&) = delete;
    RuntimeFolderGuard& operator=(const RuntimeFolderGuard&) = delete;

private:
    static constexpr const char* kVariable = "XDG_RUNTIME_DIR";
    bool replaced_ = false;
    bool wasSet_ = false;
    std::string saved_;
};

// Ecore takes the character set from the environment, over the locale that the process has chosen; translations would
// then be converted to what the environment says, and lose every letter that it lacks.
class LocaleGuard {
public:
    LocaleGuard() : saved_(setlocale(LC_ALL, nullptr)) {}
    ~LocaleGuard() { setlocale(LC_ALL, saved_.c_str()); }
    LocaleGuard(const LocaleGuard&) = delete;
    LocaleGuard& operator=(const LocaleGuard&) = delete;

private:
    std::string saved_;
};

// Elementary is up, brought up here.
bool windowsAreUp = false;

}  // namespace

ToolkitSession::ToolkitSession() {
    const RuntimeFolderGuard runtimeFolder;
    const LocaleGuard locale;
    // Heeded when EFL is initialised from zero, now or later: nothing takes it back. In a client that has EFL up its
    // modules stay as they are.
    ecore_app_no_system_modules();
    // Evas would bring these up itself, and Ecore's handlers would stand for all that time.
    eina_init();
    {
        const SignalGuard signals;
        ecore_init();
    }
    evas_init();
}

void ToolkitSession::bringUpWindows() {
    if (windowsAreUp) {
        return;
    }
    const SignalGuard signals;
    const RuntimeFolderGuard runtimeFolder;
    const LocaleGuard locale;
    // Without a compositor Elementary would only look for other kinds of display.
    if (!vaultpad_wayland_prepare()) {
        return;
    }
    // Otherwise Elementary starts a daemon that reads the desktop's menus.
    efreet_cache_disable();
    windowsAreUp = elm_init(0, nullptr) == 1;
    if (!windowsAreUp) {
        // The client's own: only counted.
        elm_shutdown();
    }
}

ToolkitSession::~ToolkitSession() {
    const SignalGuard signals;
    evas_shutdown();
    ecore_shutdown();
    eina_shutdown();
}

}  // namespace vaultpad
