/* vaultpad-compositor as a child: in a private folder, told what to do, and gone when this is. */
#ifndef VAULTPAD_COMPOSITOR_COMPOSITOR_PROCESS_H
#define VAULTPAD_COMPOSITOR_COMPOSITOR_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <deque>
#include <string>
#include <vector>

#include "../host/unique-fd.h"

namespace vaultpad::compositor {

/* Every operation throws std::runtime_error when the compositor fails, is gone, or takes more than ten seconds. */
class CompositorProcess {
public:
    /* Starts the executable; its socket lies in a new folder that only this user may enter. */
    explicit CompositorProcess(const std::string& executable);
    ~CompositorProcess();
    CompositorProcess(const CompositorProcess&) = delete;
    CompositorProcess& operator=(const CompositorProcess&) = delete;

    pid_t pid() const { return pid_; }

    /* What WAYLAND_DISPLAY is set to for a client. */
    std::string display() const;

    /* Gives a command; returns the lines that it brought, without the answer. */
    std::vector<std::string> command(const std::string& line);

    /* Waits for a line, dropping those before it; also looks at lines that came earlier than this call. */
    void waitFor(const std::string& line);

    /* Ends it and returns its wait status. */
    int stop();

private:
    using Clock = std::chrono::steady_clock;

    void start(const std::string& executable);
    std::string nextLine(Clock::time_point deadline);

    std::string folder_;
    host::UniqueFd control_;
    pid_t pid_ = -1;
    std::string buffer_;
    std::deque<std::string> unread_; /* lines of earlier commands, for waitFor() */
};

}  // namespace vaultpad::compositor

#endif
