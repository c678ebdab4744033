/* Memory whose neighbours are known: unreadable pages around it, and a pattern on the rest of its own pages. */
#ifndef VAULTPAD_TESTS_PIXEL_KERNELS_GUARDED_MEMORY_H
#define VAULTPAD_TESTS_PIXEL_KERNELS_GUARDED_MEMORY_H

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>

namespace vaultpad::test {

/* Which end of the memory touches an unreadable page: an access beyond it ends the process. */
enum class Edge { Front, Back };

class GuardedMemory {
public:
    GuardedMemory(std::size_t size, Edge edge) : size_(size), pages_((size + page() - 1) / page() * page()) {
        void* all = mmap(nullptr, pages_ + 2 * page(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (all == MAP_FAILED) {
            throw std::bad_alloc();
        }
        first_ = static_cast<std::uint8_t*>(all) + page();
        if (pages_ > 0 && mprotect(first_, pages_, PROT_READ | PROT_WRITE) != 0) {
            munmap(all, pages_ + 2 * page());
            throw std::bad_alloc();
        }
        std::fill_n(first_, pages_, kPattern);
        data_ = edge == Edge::Front ? first_ : first_ + pages_ - size_;
    }
    ~GuardedMemory() { munmap(first_ - page(), pages_ + 2 * page()); }
    GuardedMemory(const GuardedMemory&) = delete;
    GuardedMemory& operator=(const GuardedMemory&) = delete;

    std::uint8_t* data() { return data_; }
    const std::uint8_t* end() const { return data_ + size_; }

    /* Nothing was written beside the memory. */
    bool isIntactAround() const {
        const auto isPattern = [](std::uint8_t byte) { return byte == kPattern; };
        return std::all_of(static_cast<const std::uint8_t*>(first_), static_cast<const std::uint8_t*>(data_),
                           isPattern) &&
               std::all_of(end(), static_cast<const std::uint8_t*>(first_) + pages_, isPattern);
    }

private:
    static constexpr std::uint8_t kPattern = 0xA5;

    static std::size_t page() {
        static const auto size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        return size;
    }

    std::size_t size_;
    std::size_t pages_;
    std::uint8_t* first_ = nullptr;
    std::uint8_t* data_ = nullptr;
};

}  // namespace vaultpad::test

#endif
