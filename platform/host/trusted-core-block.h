/* A block of memory that is shared with the trusted application. */
#ifndef VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_BLOCK_H
#define VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_BLOCK_H

#include <cstdint>
#include <memory>

#include "unique-fd.h"

namespace vaultpad::host {

/*
 * A mapped memory file of a fixed size. Writing and reading have a place of their own each; neither leaves the block.
 * The bool functions return false, and change nothing, when the block has no room or holds no more.
 */
class SharedBlock {
public:
    /* Makes a zeroed block of size bytes; null, with errno, when that cannot be done. */
    static std::unique_ptr<SharedBlock> create(uint32_t size);

    ~SharedBlock();
    SharedBlock(const SharedBlock&) = delete;
    SharedBlock& operator=(const SharedBlock&) = delete;

    /* Makes it as create() left it. */
    void clear();

    /* data may be null when length is 0. */
    bool append(const void* data, uint32_t length);
    bool appendWord(uint32_t value);

    /* *data points into the block. */
    bool consume(void** data, uint32_t length);
    bool consumeWord(uint32_t* value);

    int fd() const { return file_.get(); }
    uint32_t size() const { return size_; }
    uint32_t written() const { return written_; }

private:
    SharedBlock(UniqueFd file, uint8_t* memory, uint32_t size);
    bool writeToFile(const void* data, uint32_t length);

    UniqueFd file_;
    uint8_t* const memory_;
    const uint32_t size_;
    uint32_t written_ = 0;
    uint32_t read_ = 0;
};

}  // namespace vaultpad::host

#endif
