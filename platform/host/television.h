/*
 * The television of the session: what the services of the host platform answer.
 *
 * It is described by the GLib key file that the environment variable VAULTPAD_TELEVISION names; without the variable,
 * all defaults hold.
 */
#ifndef VAULTPAD_PLATFORM_HOST_TELEVISION_H
#define VAULTPAD_PLATFORM_HOST_TELEVISION_H

#include <fcntl.h>
#include <sys/types.h>

#include <memory>
#include <string>
#include <vector>

#include "installation.h"

namespace vaultpad::host {

enum class LogTarget { kStderr, kNone, kFile };
enum class PanelPosition { kNone, kLandscape, kPortrait, kPortraitReversed };
enum class BluetoothStop { kOk, kNotStreaming, kFails };

/* How the log's file is opened. Only its owner reads it: a log may hold what a client decrypted. */
constexpr int kLogFileFlags = O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC;
constexpr mode_t kLogFileMode = 0600;

/* Each field is a text, or "*" for any. */
struct PrivilegeRule {
    std::string client;
    std::string user;
    std::string privilege;
};

/* The key file's values under the names of their keys; the initial values are the defaults. */
struct Television {
    LogTarget logTarget = LogTarget::kStderr;
    std::string logFile; /* for LogTarget::kFile */
    bool logErrorsOnly = false;

    std::string applicationRoot = installedApplicationRoot();

    std::string language = "C.UTF-8";
    int focusZoom = 0;
    int highContrast = 0;
    int bluetoothStreaming = 0;

    bool mirrored = false;
    PanelPosition rotator = PanelPosition::kNone; /* kNone: this television has none; the same for the sensor */
    PanelPosition sensor = PanelPosition::kNone;

    int volume = 20;
    int speaker = 0;
    BluetoothStop bluetoothStop = BluetoothStop::kOk;
    std::string voice = "none";
    std::string voiceFolder; /* empty: not given; the same for the player */
    std::string voicePlayer;

    bool allowByDefault = true;
    std::vector<PrivilegeRule> allow;
    std::vector<PrivilegeRule> deny;

    std::string taExecutable = installedTa();
    std::string taDisplay = "none";
    std::string taFrames; /* empty: not given; the same for the store */
    std::string taView = "pad";
    std::string taStore;
    std::string taLog = "stderr"; /* "stderr", "none" or a file */
    int taTimeoutSeconds = 30;
};

/*
 * Returns the television as its file describes it now: the file is read again when the variable or the file changed.
 * Null when the file cannot be used; then the reasons were printed to the standard error stream, once for each state
 * of the file, and the services fail. Thread safe; once the file was read and while it does not change, also safe in a
 * signal handler.
 */
std::shared_ptr<const Television> television() noexcept;

}  // namespace vaultpad::host

#endif
