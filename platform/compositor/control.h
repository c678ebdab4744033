/* The compositor's standard input: commands, each answered on standard output when it is done. */
#ifndef VAULTPAD_COMPOSITOR_CONTROL_H
#define VAULTPAD_COMPOSITOR_CONTROL_H

#include <string>

#include "compositor.h"

namespace vaultpad::compositor {

/* Reads a descriptor in the display's event loop. Answers "ok LINE" or "error line NUMBER: REASON" through say. */
class Control {
public:
    /* keepRunning: the end of the input does not end the compositor. */
    Control(Compositor& compositor, int input, bool keepRunning, Compositor::Say say);
    ~Control();
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    /* Whether a command could not be done. */
    bool failed() const { return failed_; }

private:
    static int onInput(int fd, uint32_t mask, void* data);
    bool readAll(int fd);
    void obey(const std::string& line);
    void end();

    Compositor& compositor_;
    const bool keepRunning_;
    const Compositor::Say say_;
    wl_event_source* source_;
    std::string buffer_;
    int lineNumber_ = 0;
    bool failed_ = false;
};

}  // namespace vaultpad::compositor

#endif
