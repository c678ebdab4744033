// The application under test: programmes above an age are shown after a PIN was typed on the protected pad.
#ifndef APP_TEST_SUITE_PARENTAL_LOCK_H
#define APP_TEST_SUITE_PARENTAL_LOCK_H

#include <functional>
#include <optional>
#include <string>

#include "rsa-key.h"

// Gives the next key of the remote control; nothing when there are no more.
using KeySource = std::function<std::optional<std::string>()>;

enum class Answer { Unlocked, WrongPin, Left, NoPad };

class ParentalLock {
public:
    explicit ParentalLock(std::string pin);
    ~ParentalLock();
    ParentalLock(const ParentalLock&) = delete;
    ParentalLock& operator=(const ParentalLock&) = delete;

    // Opens the pad, passes the keys on until it is done, and compares what was typed.
    Answer ask(const KeySource& nextKey);

private:
    bool typedIsPin() const;

    std::string pin_;
    rsa_key key_;
};

#endif
