/* Handles that are checked before use: a null, stale or foreign one finds nothing. */
#ifndef VAULTPAD_PLATFORM_HOST_HANDLE_TABLE_H
#define VAULTPAD_PLATFORM_HOST_HANDLE_TABLE_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace vaultpad::host {

/* Makes a handle that no other call makes. It is a number, not an address, so a released handle never comes back. */
inline void* makeHandle() {
    static std::atomic<std::uintptr_t> last{0};
    return reinterpret_cast<void*>(++last);
}

/* The live objects of one kind by handle. Thread safe. */
template <typename Object>
class HandleTable {
public:
    /*
     * The table of this kind. It is never destroyed, so that a client may still call while its process ends; what is
     * open then goes with the process.
     */
    static HandleTable& instance() {
        static auto* const table = new HandleTable;
        return *table;
    }

    /* Enters an object and returns its handle. */
    void* add(std::shared_ptr<Object> object) {
        void* const handle = makeHandle();
        const std::lock_guard lock(mutex_);
        objects_.emplace(handle, std::move(object));
        return handle;
    }

    /* Returns the object, or null. */
    std::shared_ptr<Object> find(const void* handle) const {
        const std::lock_guard lock(mutex_);
        const auto found = objects_.find(handle);
        return found == objects_.end() ? nullptr : found->second;
    }

    /* Takes the object out and returns it, or null. */
    std::shared_ptr<Object> take(const void* handle) {
        const std::lock_guard lock(mutex_);
        const auto node = objects_.extract(handle);
        return node.empty() ? nullptr : node.mapped();
    }

private:
    HandleTable() = default;

    mutable std::mutex mutex_;
    std::unordered_map<const void*, std::shared_ptr<Object>> objects_;
};

}  // namespace vaultpad::host

#endif
