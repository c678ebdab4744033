#include "byte-core.h"

#include <vaultpad-platform/trusted-core.h>
#include <vaultpad-platform/trusted-ui.h>

#include <cstring>

using vaultpad::fuzz::ByteBlock;
using vaultpad::fuzz::byteCore;

namespace vaultpad::fuzz {

ByteCore& byteCore() {
    static ByteCore core;
    return core;
}

}  // namespace vaultpad::fuzz

namespace {

int append(void* handle, const void* data, std::size_t size) {
    auto* block = static_cast<ByteBlock*>(handle);
    if (block == nullptr || size > block->capacity - block->bytes.size()) {
        return -1;
    }
    const auto* bytes = static_cast<const uint8_t*>(data);
    block->bytes.insert(block->bytes.end(), bytes, bytes + size);
    return 0;
}

uint8_t* consume(void* handle, std::size_t size) {
    auto* block = static_cast<ByteBlock*>(handle);
    if (block == nullptr || size > block->bytes.size() - block->read) {
        return nullptr;
    }
    uint8_t* place = block->bytes.data() + block->read;
    block->read += size;
    return place;
}

}  // namespace

void* tzfw_core_initialize_context(uint32_t*) {
    return &byteCore();
}

int tzfw_core_set_uuid(void*, uint32_t, uint16_t, uint16_t, const uint8_t*) {
    return 0;
}

int tzfw_core_open_session(void*) {
    return 0;
}

int tzfw_core_close_session(void*) {
    return 0;
}

void tzfw_core_finalize_context(void*) {
    byteCore().blocks.clear();
}

void* tzfw_core_create_shared_memory(void*, int, uint32_t size, int, int) {
    byteCore().blocks.push_back({size, {}, 0});
    return &byteCore().blocks.back();
}

int tzfw_core_write_uint(void*, void* block, uint32_t value) {
    return append(block, &value, sizeof(value));
}

int tzfw_core_write_string(void*, void* block, const char* text) {
    return append(block, text, std::strlen(text) + 1);
}

int tzfw_core_write_blob(void*, void* block, const void* data, uint32_t size) {
    return append(block, data, size);
}

int tzfw_core_invoke_event(void*, uint32_t event) {
    auto& core = byteCore();
    if (core.blocks.empty()) {
        return -1;
    }
    const int result = core.onEvent ? core.onEvent(event, core.blocks.front().bytes) : 0;
    ByteBlock& last = core.blocks.back();
    if (last.bytes.empty()) {
        last.bytes = core.answer;
        last.bytes.resize(last.capacity);
    }
    return result;
}

int tzfw_core_read_uint(void*, void* block, uint32_t* value) {
    const uint8_t* bytes = consume(block, sizeof(*value));
    if (bytes == nullptr) {
        return -1;
    }
    std::memcpy(value, bytes, sizeof(*value));
    return 0;
}

int tzfw_core_read_blob(void*, void* block, void** data, uint32_t size) {
    uint8_t* bytes = consume(block, size);
    if (bytes == nullptr) {
        return -1;
    }
    *data = bytes;
    return 0;
}

void tzfw_core_release_shared_memory(void*, void* block) {
    byteCore().blocks.remove_if([block](const ByteBlock& candidate) { return &candidate == block; });
}

// No fuzzer looks at the trusted-UI description: there is none.
void* tzfw_tui_create_context(int* error) {
    *error = -1;
    return nullptr;
}

void* tzfw_tui_get_gp_info(void*) {
    return nullptr;
}

uint32_t tzfw_tui_get_gp_info_size(void) {
    return 0;
}

void tzfw_tui_release_context(void*) {}
