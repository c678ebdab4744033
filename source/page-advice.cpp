#include "page-advice.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace vaultpad {

namespace {

constexpr std::size_t kReserved = std::size_t{15} << 20;

// From the page in which the block begins to the one in which it ends: what else lies in these does not mind.
bool advise(void* block, std::size_t bytes, int advice) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = reinterpret_cast<std::uintptr_t>(block) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(block) + bytes + page - 1) / page * page;
    return madvise(reinterpret_cast<void*>(begin), end - begin, advice) == 0;
}

}  // namespace

bool makePages(void* block, std::size_t bytes) {
    const bool huge = advise(block, bytes, MADV_HUGEPAGE);
    advise(block, bytes, MADV_POPULATE_WRITE);
    return huge;
}

void growHeapInHugePages(std::size_t bytes) {
    // Once a block that was mapped singly is freed, blocks up to its size come from the heap, and twice as much may be
    // free at the heap's end before that is cut off.
    std::free(std::malloc(bytes + 1));
    void* blocks[2] = {};
    for (void*& block : blocks) {
        block = std::malloc(kReserved / 2);
        if (block != nullptr) {
            advise(block, kReserved / 2, MADV_HUGEPAGE);
        }
    }
    std::free(blocks[1]);
    std::free(blocks[0]);
}

}  // namespace vaultpad
