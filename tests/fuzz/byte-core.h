/*
 * A trusted-execution client whose blocks are plain bytes, as they travel.
 *
 * It answers any context, so that no session needs to be opened. Linked into an executable, it stands in the place of
 * the platform double's trusted-execution and trusted-UI clients.
 */
#ifndef VAULTPAD_TESTS_FUZZ_BYTE_CORE_H
#define VAULTPAD_TESTS_FUZZ_BYTE_CORE_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <vector>

namespace vaultpad::fuzz {

struct ByteBlock {
    std::size_t capacity = 0;
    std::vector<std::uint8_t> bytes; /* written so far, or the answer */
    std::size_t read = 0;            /* consumed of them */
};

struct ByteCore {
    /* What a block that nothing was written to holds once an event was invoked. */
    std::vector<std::uint8_t> answer;

    /* Takes an event with the bytes of its first block; returns the event's result. None: every event is accepted. */
    std::function<int(std::uint32_t event, const std::vector<std::uint8_t>& request)> onEvent;

    /* The blocks that were not released. */
    std::list<ByteBlock> blocks;
};

ByteCore& byteCore();

}  // namespace vaultpad::fuzz

#endif
