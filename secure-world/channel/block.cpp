#include "channel/block.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <string>

#include "session/refusal.h"

namespace vaultpad::secureworld {

namespace {

// From this size on a copy's memory is made at once, in huge pages where the system has them: a batch of images has
// over a thousand pages, and each would cost a fault. Whole huge pages are asked for, or the last part would be made of
// small ones.
constexpr std::size_t kLargeCopy = std::size_t{1024} * 1024;
constexpr std::size_t kHugePage = std::size_t{2} * 1024 * 1024;

std::shared_ptr<std::uint8_t[]> allocate(std::size_t size) {
    if (size < kLargeCopy) {
        return std::shared_ptr<std::uint8_t[]>(new std::uint8_t[size]);
    }
    const std::size_t whole = (size + kHugePage - 1) / kHugePage * kHugePage;
    void* memory = mmap(nullptr, whole, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::bad_alloc();
    }
    // Advice may be refused, and changes nothing but the time.
    madvise(memory, whole, MADV_HUGEPAGE);
    madvise(memory, whole, MADV_POPULATE_WRITE);
    return {static_cast<std::uint8_t*>(memory), [whole](std::uint8_t* bytes) { munmap(bytes, whole); }};
}

}  // namespace

void checkBlock(const FileDescriptor& file, const VaultPadChannelBlock& announced) {
    // Without the seal the client could cut the file off under a mapping, and touching that would end this process.
    const int seals = fcntl(file.get(), F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0) {
        throw Refusal("a block is no memory file sealed against shrinking");
    }
    struct stat status = {};
    if (fstat(file.get(), &status) != 0 || status.st_size != static_cast<off_t>(announced.size)) {
        throw Refusal("a block announced with " + std::to_string(announced.size) + " bytes has " +
                      std::to_string(status.st_size));
    }
    if (announced.written > announced.size) {
        throw Refusal("a block of " + std::to_string(announced.size) + " bytes is said to hold " +
                      std::to_string(announced.written));
    }
}

RequestBytes copyRequest(const FileDescriptor& file, const VaultPadChannelBlock& announced) {
    const std::shared_ptr<std::uint8_t[]> bytes = allocate(announced.written);
    std::size_t done = 0;
    while (done < announced.written) {
        const ssize_t count = pread(file.get(), bytes.get() + done, announced.written - done, static_cast<off_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            throw Refusal("a block cannot be read");
        }
        done += static_cast<std::size_t>(count);
    }
    return {bytes, announced.written};
}

AnswerBlock::AnswerBlock(const FileDescriptor& file, const VaultPadChannelBlock& announced)
    : size_(announced.size), data_(nullptr) {
    void* memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        throw Refusal(std::string("the answer's block cannot be written to: ") + std::strerror(errno));
    }
    data_ = static_cast<std::uint8_t*>(memory);
}

AnswerBlock::~AnswerBlock() {
    munmap(data_, size_);
}

}  // namespace vaultpad::secureworld
