// The trusted-execution and trusted-UI clients of the double, with a trusted application that keeps what it is sent.
#include <vaultpad-platform/trusted-core.h>
#include <vaultpad-platform/trusted-ui.h>

#include <cstdio>
#include <cstring>

#include "platform-double.h"

using vaultpad::test::Block;
using vaultpad::test::Bytes;
using vaultpad::test::platform;
using vaultpad::test::Value;

namespace {

Block* liveBlock(const void* context, const void* handle) {
    if (!platform().isLiveContext(context)) {
        return nullptr;
    }
    for (const auto& block : platform().blocks) {
        if (block.get() == handle && !block->released) {
            return block.get();
        }
    }
    return nullptr;
}

std::string nameOf(const void* handle) {
    for (const auto& block : platform().blocks) {
        if (block.get() == handle) {
            return "block " + std::to_string(block->number);
        }
    }
    return "no block";
}

std::size_t sizeOf(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        return text->size() + 1;
    }
    const auto* bytes = std::get_if<Bytes>(&value);
    return bytes != nullptr ? bytes->size() : sizeof(std::uint32_t);
}

std::size_t usedBytes(const Block& block) {
    std::size_t used = 0;
    for (const Value& value : block.written) {
        used += sizeOf(value);
    }
    return used;
}

// Nothing is copied before the block is known to have room for it.
template <typename MakeValue>
int append(const char* function, void* context, void* handle, const std::string& shown, std::size_t size,
           MakeValue makeValue) {
    if (const auto code = platform().call(function, nameOf(handle) + ", " + shown)) {
        return *code;
    }
    Block* block = liveBlock(context, handle);
    if (block == nullptr || size > block->size - usedBytes(*block)) {
        return -1;
    }
    block->written.push_back(makeValue());
    return 0;
}

}  // namespace

void* tzfw_core_initialize_context(uint32_t* out) {
    if (platform().call("tzfw_core_initialize_context", out != nullptr ? "out" : "null")) {
        return nullptr;
    }
    platform().context = std::make_unique<int>(0);
    return platform().context.get();
}

int tzfw_core_set_uuid(void* context, uint32_t time_low, uint16_t time_mid, uint16_t time_hi_and_version,
                       const uint8_t* clock_seq_and_node) {
    char uuid[37];
    const uint8_t* node = clock_seq_and_node;
    std::snprintf(uuid, sizeof(uuid), "%08x-%04x-%04x-%02x%02x-%02x%02x%02x%02x%02x%02x", time_low, time_mid,
                  time_hi_and_version, node[0], node[1], node[2], node[3], node[4], node[5], node[6], node[7]);
    if (const auto code = platform().call("tzfw_core_set_uuid", uuid)) {
        return *code;
    }
    return platform().isLiveContext(context) ? 0 : -1;
}

int tzfw_core_open_session(void* context) {
    if (const auto code = platform().call("tzfw_core_open_session")) {
        return *code;
    }
    platform().sessionOpen = platform().isLiveContext(context);
    return platform().sessionOpen ? 0 : -1;
}

int tzfw_core_close_session(void* context) {
    if (const auto code = platform().call("tzfw_core_close_session")) {
        return *code;
    }
    platform().sessionOpen = false;
    return platform().isLiveContext(context) ? 0 : -1;
}

void tzfw_core_finalize_context(void* context) {
    platform().call("tzfw_core_finalize_context");
    if (platform().isLiveContext(context)) {
        platform().context.reset();
        platform().sessionOpen = false;
    }
}

void* tzfw_core_create_shared_memory(void* context, int type, uint32_t size, int in_flags, int out_flags) {
    const bool failed =
        platform()
            .call("tzfw_core_create_shared_memory", std::to_string(type) + ", " + std::to_string(size) + ", " +
                                                        std::to_string(in_flags) + ", " + std::to_string(out_flags))
            .has_value();
    if (failed || !platform().isLiveContext(context)) {
        return nullptr;
    }
    auto& blocks = platform().blocks;
    const int number = static_cast<int>(blocks.size()) + 1;
    blocks.push_back(std::make_shared<Block>(Block{number, type, size, in_flags, out_flags, {}, std::nullopt, false}));
    return blocks.back().get();
}

int tzfw_core_write_uint(void* context, void* block, uint32_t value) {
    return append("tzfw_core_write_uint", context, block, std::to_string(static_cast<int32_t>(value)), sizeof(value),
                  [value] { return Value(value); });
}

int tzfw_core_write_string(void* context, void* block, const char* text) {
    return append("tzfw_core_write_string", context, block, text, std::strlen(text) + 1,
                  [text] { return Value(std::string(text)); });
}

int tzfw_core_write_blob(void* context, void* block, const void* data, uint32_t size) {
    const auto* bytes = static_cast<const uint8_t*>(data);
    return append("tzfw_core_write_blob", context, block, std::to_string(size) + " bytes", size,
                  [bytes, size] { return Value(Bytes(bytes, bytes + size)); });
}

int tzfw_core_invoke_event(void* context, uint32_t event) {
    if (const auto code = platform().call("tzfw_core_invoke_event", std::to_string(event))) {
        return *code;
    }
    if (!platform().isLiveContext(context) || !platform().sessionOpen) {
        return -1;
    }
    for (const auto& block : platform().blocks) {
        if (!block->event && !block->released) {
            block->event = event;
        }
    }
    return 0;
}

int tzfw_core_read_uint(void* context, void* block, uint32_t* value) {
    if (const auto code = platform().call("tzfw_core_read_uint", nameOf(block))) {
        return *code;
    }
    auto& answer = platform().answer;
    if (liveBlock(context, block) == nullptr || answer.empty() || !std::holds_alternative<uint32_t>(answer.front())) {
        return -1;
    }
    *value = std::get<uint32_t>(answer.front());
    answer.pop_front();
    return 0;
}

int tzfw_core_read_blob(void* context, void* block, void** data, uint32_t size) {
    if (const auto code = platform().call("tzfw_core_read_blob", nameOf(block) + ", " + std::to_string(size))) {
        return *code;
    }
    Block* live = liveBlock(context, block);
    auto& answer = platform().answer;
    if (live == nullptr || answer.empty() || !std::holds_alternative<Bytes>(answer.front()) ||
        std::get<Bytes>(answer.front()).size() != size) {
        return -1;
    }
    // The block keeps the bytes, so that the pointer stays good until it is gone.
    live->written.push_back(std::move(answer.front()));
    answer.pop_front();
    *data = std::get<Bytes>(live->written.back()).data();
    return 0;
}

void tzfw_core_release_shared_memory(void* context, void* block) {
    platform().call("tzfw_core_release_shared_memory", nameOf(block));
    if (Block* live = liveBlock(context, block)) {
        live->released = true;
    }
}

void* tzfw_tui_create_context(int* error) {
    if (const auto code = platform().call("tzfw_tui_create_context")) {
        *error = *code;
        return nullptr;
    }
    *error = 0;
    platform().tuiContext = std::make_unique<int>(0);
    return platform().tuiContext.get();
}

void* tzfw_tui_get_gp_info(void* tui_context) {
    const bool failed = platform().call("tzfw_tui_get_gp_info").has_value();
    const bool live = tui_context != nullptr && tui_context == platform().tuiContext.get();
    return failed || !live ? nullptr : platform().television.trustedUiDescription.data();
}

uint32_t tzfw_tui_get_gp_info_size(void) {
    platform().call("tzfw_tui_get_gp_info_size");
    return static_cast<uint32_t>(platform().television.trustedUiDescription.size());
}

void tzfw_tui_release_context(void* tui_context) {
    platform().call("tzfw_tui_release_context");
    if (tui_context == platform().tuiContext.get()) {
        platform().tuiContext.reset();
    }
}
