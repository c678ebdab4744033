/* When which service was called, and for how long: shows where a session's time goes. */
#ifndef VAULTPAD_PLATFORM_HOST_CALL_TRACE_H
#define VAULTPAD_PLATFORM_HOST_CALL_TRACE_H

#include <cstdint>

namespace vaultpad::host {

/*
 * Writes a line into the file that VAULTPAD_TRACE names when it goes: the beginning and the length of its life in
 * microseconds (of CLOCK_MONOTONIC, from which another program can tell its own times), the call's name, and a detail.
 * Nothing that passes through a call is written. Without the variable it does nothing.
 */
class CallTrace {
public:
    /* The texts must outlive the object. */
    explicit CallTrace(const char* call, const char* detail = "") noexcept : CallTrace(call, detail, kNoNumber) {}
    CallTrace(const char* call, uint32_t number) noexcept : CallTrace(call, "", number) {}
    ~CallTrace();
    CallTrace(const CallTrace&) = delete;
    CallTrace& operator=(const CallTrace&) = delete;

    static bool enabled() noexcept;

private:
    static constexpr int64_t kNoNumber = -1;

    CallTrace(const char* call, const char* detail, int64_t number) noexcept;

    const char* const call_;
    const char* const detail_;
    const int64_t number_;
    const int64_t began_;
};

}  // namespace vaultpad::host

#endif
