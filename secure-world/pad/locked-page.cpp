#include "pad/locked-page.h"

#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vaultpad::secureworld {

LockedPage::LockedPage() : size_(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))), data_(nullptr) {
    void* page = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (page == MAP_FAILED) {
        throw std::system_error(errno, std::generic_category(), "no memory for the typed text");
    }
    if (mlock(page, size_) != 0) {
        const int error = errno;
        munmap(page, size_);
        throw std::system_error(error, std::generic_category(),
                                "memory for the typed text cannot be locked (raise the limit: ulimit -l 64)");
    }
    // Both only add to the lock; a kernel without them still keeps the page off the disk.
    madvise(page, size_, MADV_DONTDUMP);
    madvise(page, size_, MADV_WIPEONFORK);
    data_ = static_cast<std::uint8_t*>(page);
}

LockedPage::~LockedPage() {
    wipe();
    munmap(data_, size_);
}

void LockedPage::wipe() {
    explicit_bzero(data_, size_);
}

}  // namespace vaultpad::secureworld
