#include "trusted-core-block.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace vaultpad::host {

namespace {

constexpr uint32_t kWordSize = 4;
constexpr unsigned kByteBits = 8;

/*
 * From this length on data goes into the file by a system call. Through the mapping each untouched page would cost a
 * fault, which is several times what filling it takes.
 */
constexpr uint32_t kWriteThroughFile = 16384;

/* The TA maps the file: sealed, its size cannot change under that mapping. */
constexpr int kSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL;

}  // namespace

std::unique_ptr<SharedBlock> SharedBlock::create(uint32_t size) {
    UniqueFd file(memfd_create("vaultpad-block", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (size == 0 || !file.valid()) {
        errno = size == 0 ? EINVAL : errno;
        return nullptr;
    }
    if (ftruncate(file.get(), static_cast<off_t>(size)) != 0 || fcntl(file.get(), F_ADD_SEALS, kSeals) != 0) {
        return nullptr;
    }
    void* const memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (memory == MAP_FAILED) {
        return nullptr;
    }
    return std::unique_ptr<SharedBlock>(new SharedBlock(std::move(file), static_cast<uint8_t*>(memory), size));
}

SharedBlock::SharedBlock(UniqueFd file, uint8_t* memory, uint32_t size)
    : file_(std::move(file)), memory_(memory), size_(size) {}

SharedBlock::~SharedBlock() {
    munmap(memory_, size_);
}

void SharedBlock::clear() {
    std::memset(memory_, 0, size_);
    written_ = 0;
    read_ = 0;
}

bool SharedBlock::append(const void* data, uint32_t length) {
    if (length > size_ - written_ || (data == nullptr && length > 0)) {
        return false;
    }
    if (length > 0) {
        if (length < kWriteThroughFile || !writeToFile(data, length)) {
            std::memcpy(memory_ + written_, data, length);
        }
        written_ += length;
    }
    return true;
}

bool SharedBlock::writeToFile(const void* data, uint32_t length) {
    return pwrite(file_.get(), data, length, static_cast<off_t>(written_)) == static_cast<ssize_t>(length);
}

bool SharedBlock::appendWord(uint32_t value) {
    uint8_t bytes[kWordSize];
    for (unsigned i = 0; i < kWordSize; ++i) {
        bytes[i] = static_cast<uint8_t>(value >> (i * kByteBits));
    }
    return append(bytes, kWordSize);
}

bool SharedBlock::consume(void** data, uint32_t length) {
    if (data == nullptr || length > size_ - read_) {
        return false;
    }
    *data = memory_ + read_;
    read_ += length;
    return true;
}

bool SharedBlock::consumeWord(uint32_t* value) {
    void* place = nullptr;
    if (value == nullptr || !consume(&place, kWordSize)) {
        return false;
    }
    /* Copied out first: the other process may still write. */
    uint8_t bytes[kWordSize];
    std::memcpy(bytes, place, kWordSize);
    *value = 0;
    for (unsigned i = 0; i < kWordSize; ++i) {
        *value |= static_cast<uint32_t>(bytes[i]) << (i * kByteBits);
    }
    return true;
}

}  // namespace vaultpad::host
