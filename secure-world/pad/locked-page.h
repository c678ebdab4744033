// Memory for what must never reach a disk, a core file or a child process.
#ifndef VAULTPAD_SECURE_WORLD_PAD_LOCKED_PAGE_H
#define VAULTPAD_SECURE_WORLD_PAD_LOCKED_PAGE_H

#include <cstddef>
#include <cstdint>

namespace vaultpad::secureworld {

// One page: locked into memory, left out of core files, empty in a forked child, wiped before it is given back.
class LockedPage {
public:
    // Throws std::system_error when the page cannot be had or not be locked.
    LockedPage();
    ~LockedPage();
    LockedPage(const LockedPage&) = delete;
    LockedPage& operator=(const LockedPage&) = delete;

    std::uint8_t* data() { return data_; }
    const std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }

    void wipe();

private:
    std::size_t size_;
    std::uint8_t* data_;
};

}  // namespace vaultpad::secureworld

#endif
