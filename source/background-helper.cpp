#include "background-helper.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "helper-paths.h"

namespace vaultpad {

namespace {

// Killed, not yet reaped. The client's other children are its own to wait for, hence by id only; a client that waits
// for every child itself may have reaped one of these already.
std::vector<pid_t>& killedHelpers() {
    static std::vector<pid_t> pids;
    return pids;
}

}  // namespace

pid_t startBackgroundHelper(const char* mode, const char* voiceConnection) {
    reapBackgroundHelpers();
    const char* const path = backgroundHelperPath();
    // The room for this one is made here, where a failure may be reported: killing happens in destructors too.
    killedHelpers().reserve(killedHelpers().size() + 1);
    const pid_t pid = fork();
    if (pid == 0) {
        execl(path, path, mode, voiceConnection, static_cast<char*>(nullptr));
    }
    return pid;
}

void killBackgroundHelper(int& pid) {
    if (pid == -1) {
        return;
    }
    // The child of a failed exec has 0 here and signals its whole process group, the client included: intended. It must
    // not be waited for, though: 0 would take any child of the client's.
    kill(pid, SIGKILL);
    if (pid > 0) {
        killedHelpers().push_back(pid);
    }
    pid = -1;
}

void reapBackgroundHelpers() {
    std::vector<pid_t>& pids = killedHelpers();
    const auto isGone = [](pid_t pid) { return waitpid(pid, nullptr, WNOHANG) != 0; };
    pids.erase(std::remove_if(pids.begin(), pids.end(), isGone), pids.end());
}

}  // namespace vaultpad
