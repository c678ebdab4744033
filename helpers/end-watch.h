/* Tells a helper when to end: at a termination signal, or when the process that started it is gone. */
#ifndef VAULTPAD_HELPERS_END_WATCH_H
#define VAULTPAD_HELPERS_END_WATCH_H

#include <poll.h>

#include <array>
#include <chrono>

namespace vaultpad::helpers {

/*
 * Blocks SIGTERM, SIGINT and SIGHUP from its making on, whatever the client had blocked, and reads them instead. The
 * starter is watched as a process: the kernel's own parent-death signal already comes when the thread that forked ends.
 */
class EndWatch {
public:
    EndWatch();
    ~EndWatch();
    EndWatch(const EndWatch&) = delete;
    EndWatch& operator=(const EndWatch&) = delete;

    /* False when it cannot watch, also because the starter is gone already. */
    bool works() const { return works_; }

    /* Readable when the helper is to end. */
    std::array<pollfd, 2> descriptors() const { return {{{signals_, POLLIN, 0}, {starter_, POLLIN, 0}}}; }

    /* Waits at most that long, for ever when negative; returns whether the helper is to end. */
    bool endsWithin(std::chrono::milliseconds time) const;

private:
    int signals_ = -1;
    int starter_ = -1;
    bool works_ = false;
};

}  // namespace vaultpad::helpers

#endif
