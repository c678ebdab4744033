#include <vaultpad-platform/trusted-core.h>

#include <cstring>
#include <memory>

#include "call-guard.h"
#include "call-trace.h"
#include "handle-table.h"
#include "trusted-core-context.h"

namespace {

using vaultpad::host::CallTrace;
using vaultpad::host::kFailure;
using vaultpad::host::orFailure;
using vaultpad::host::SharedBlock;
using vaultpad::host::TrustedContext;

using Contexts = vaultpad::host::HandleTable<TrustedContext>;

constexpr std::size_t kClockSeqAndNodeSize = 8;

/* Runs an action that returns true on success on a live context. */
template <typename Action>
int onContext(const void* context, Action&& action) noexcept {
    return orFailure(kFailure, [&]() {
        const std::shared_ptr<TrustedContext> found = Contexts::instance().find(context);
        return found && action(*found) ? 0 : kFailure;
    });
}

/* The same on a live block of a live context. */
template <typename Action>
int onBlock(const void* context, const void* block, Action&& action) noexcept {
    return onContext(context, [&](TrustedContext& owner) {
        SharedBlock* const found = owner.findBlock(block);
        return found != nullptr && action(*found);
    });
}

/* Puts size bytes of a number into target, most significant first, and returns the place behind them. */
uint8_t* putBigEndian(uint8_t* target, uint32_t number, unsigned size) {
    constexpr unsigned kByteBits = 8;
    for (unsigned i = size; i-- > 0;) {
        *target++ = static_cast<uint8_t>(number >> (i * kByteBits));
    }
    return target;
}

}  // namespace

void* tzfw_core_initialize_context(uint32_t*) {
    const CallTrace trace(__func__);
    return orFailure(static_cast<void*>(nullptr),
                     []() { return Contexts::instance().add(std::make_shared<TrustedContext>()); });
}

int tzfw_core_set_uuid(void* context, uint32_t time_low, uint16_t time_mid, uint16_t time_hi_and_version,
                       const uint8_t* clock_seq_and_node) {
    return onContext(context, [&](TrustedContext& owner) {
        if (clock_seq_and_node == nullptr) {
            return false;
        }
        vaultpad::host::TaUuid uuid;
        uint8_t* place = putBigEndian(uuid.data(), time_low, sizeof time_low);
        place = putBigEndian(place, time_mid, sizeof time_mid);
        place = putBigEndian(place, time_hi_and_version, sizeof time_hi_and_version);
        std::memcpy(place, clock_seq_and_node, kClockSeqAndNodeSize);
        owner.setUuid(uuid);
        return true;
    });
}

int tzfw_core_open_session(void* context) {
    const CallTrace trace(__func__);
    return onContext(context, [](TrustedContext& owner) { return owner.openSession(); });
}

int tzfw_core_close_session(void* context) {
    const CallTrace trace(__func__);
    return onContext(context, [](TrustedContext& owner) { return owner.closeSession(); });
}

void tzfw_core_finalize_context(void* context) {
    Contexts::instance().take(context);
}

void* tzfw_core_create_shared_memory(void* context, int type, uint32_t size, int in_flags, int out_flags) {
    const CallTrace trace(__func__, size);
    return orFailure(static_cast<void*>(nullptr), [&]() -> void* {
        const std::shared_ptr<TrustedContext> owner = Contexts::instance().find(context);
        if (!owner || type != VAULTPAD_TRUSTED_MEMORY_TYPE || in_flags != VAULTPAD_TRUSTED_MEMORY_IN ||
            out_flags != VAULTPAD_TRUSTED_MEMORY_OUT) {
            return nullptr;
        }
        return owner->addBlock(size);
    });
}

int tzfw_core_write_uint(void* context, void* block, uint32_t value) {
    return onBlock(context, block, [&](SharedBlock& memory) { return memory.appendWord(value); });
}

int tzfw_core_write_string(void* context, void* block, const char* text) {
    return onBlock(context, block, [&](SharedBlock& memory) {
        /* A text that is longer than any block is not walked to its end. */
        const std::size_t length = text == nullptr ? 0 : strnlen(text, memory.size());
        return text != nullptr && memory.append(text, static_cast<uint32_t>(length) + 1);
    });
}

int tzfw_core_write_blob(void* context, void* block, const void* data, uint32_t size) {
    const CallTrace trace(__func__, size);
    return onBlock(context, block, [&](SharedBlock& memory) { return memory.append(data, size); });
}

int tzfw_core_invoke_event(void* context, uint32_t event) {
    const CallTrace trace(__func__, event);
    return onContext(context, [&](TrustedContext& owner) { return owner.invoke(event); });
}

int tzfw_core_read_uint(void* context, void* block, uint32_t* value) {
    return onBlock(context, block, [&](SharedBlock& memory) { return memory.consumeWord(value); });
}

int tzfw_core_read_blob(void* context, void* block, void** data, uint32_t size) {
    return onBlock(context, block, [&](SharedBlock& memory) { return memory.consume(data, size); });
}

void tzfw_core_release_shared_memory(void* context, void* block) {
    const CallTrace trace(__func__);
    onContext(context, [&](TrustedContext& owner) {
        owner.removeBlock(block);
        return true;
    });
}
