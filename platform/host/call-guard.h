/* Keeps exceptions inside the host platform: its callers are C. */
#ifndef VAULTPAD_PLATFORM_HOST_CALL_GUARD_H
#define VAULTPAD_PLATFORM_HOST_CALL_GUARD_H

#include <exception>

namespace vaultpad::host {

/* Most services say failure with this where their header names no other value. */
constexpr int kFailure = -1;

/* Returns what call returns, or failure when it throws (memory ran out, in practice). */
template <typename Result, typename Call>
Result orFailure(Result failure, Call&& call) noexcept {
    try {
        return call();
    } catch (const std::exception&) {
        return failure;
    }
}

}  // namespace vaultpad::host

#endif
