/* The process that a trusted application (TA) runs in. */
#ifndef VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_PROCESS_H
#define VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_PROCESS_H

#include <sys/types.h>

#include <string>

#include "television.h"
#include "unique-fd.h"

namespace vaultpad::host {

class TaProcess {
public:
    TaProcess() = default;
    ~TaProcess() { end(); }
    TaProcess(const TaProcess&) = delete;
    TaProcess& operator=(const TaProcess&) = delete;

    /*
     * Starts the TA that the television names; channel is its end of the socket pair. It gets the channel, the standard
     * streams, and no other descriptor; signals are as a new session has them. Returns 0, or an errno value.
     */
    int start(const Television& television, int channel);

    /*
     * Waits for the TA, whose channel the caller has closed, kills it when it does not end in time, and reaps it: this
     * child only. Returns how it ended, for a message; empty when it was not running. The client may have reaped it
     * itself or ignore SIGCHLD, then how it ended is unknown.
     */
    std::string end() noexcept;

private:
    bool endsInTime() const;

    pid_t pid_ = 0;
    UniqueFd pidfd_;
};

}  // namespace vaultpad::host

#endif
