/* A termination signal for this process, which an EndWatch holds up; taken away again with the object. */
#ifndef VAULTPAD_TESTS_VOICE_OWN_TERMINATION_H
#define VAULTPAD_TESTS_VOICE_OWN_TERMINATION_H

#include <signal.h>

#include <ctime>

namespace vaultpad::test {

class OwnTermination {
public:
    OwnTermination() { raise(SIGTERM); }
    ~OwnTermination() {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, SIGTERM);
        const timespec now = {0, 0};
        sigtimedwait(&set, nullptr, &now);
    }
    OwnTermination(const OwnTermination&) = delete;
    OwnTermination& operator=(const OwnTermination&) = delete;
};

}  // namespace vaultpad::test

#endif
