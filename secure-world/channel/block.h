// The blocks of memory that an event shares with the client.
#ifndef VAULTPAD_SECURE_WORLD_CHANNEL_BLOCK_H
#define VAULTPAD_SECURE_WORLD_CHANNEL_BLOCK_H

#include <cstddef>
#include <cstdint>

#include "channel/file-descriptor.h"
#include "platform/host/secure-channel-wire.h"
#include "session/request-bytes.h"

namespace vaultpad::secureworld {

// Throws Refusal unless the file is a memory file that cannot shrink and has the announced size, of which no more than
// all is written.
void checkBlock(const FileDescriptor& file, const VaultPadChannelBlock& announced);

// Copies what the client wrote, once: whatever it changes in the block from then on changes nothing here. The block
// must have passed checkBlock(). Throws Refusal when it cannot be read.
RequestBytes copyRequest(const FileDescriptor& file, const VaultPadChannelBlock& announced);

// A block mapped for an answer. While it is mapped the client cannot make it read-only.
class AnswerBlock {
public:
    // The block must have passed checkBlock(). Throws Refusal when it cannot be written to.
    AnswerBlock(const FileDescriptor& file, const VaultPadChannelBlock& announced);
    ~AnswerBlock();
    AnswerBlock(const AnswerBlock&) = delete;
    AnswerBlock& operator=(const AnswerBlock&) = delete;

    std::uint8_t* data() const { return data_; }
    std::size_t size() const { return size_; }

private:
    std::size_t size_;
    std::uint8_t* data_;
};

}  // namespace vaultpad::secureworld

#endif
