#include "platform-faults.h"

#include <dlfcn.h>
#include <vaultpad-platform/cynara.h>
#include <vaultpad-platform/display-rotator.h>
#include <vaultpad-platform/key-router.h>
#include <vaultpad-platform/trusted-core.h>
#include <vaultpad-platform/trusted-ui.h>
#include <vaultpad-platform/vconf.h>

#include <atomic>

namespace vaultpad::soak {

namespace {

std::atomic<int> calls{0};
std::atomic<int> failing{0};
std::atomic<const char*> failed{nullptr};

bool failsNow(const char* function) {
    if (++calls != failing) {
        return false;
    }
    failed = function;
    return true;
}

template <typename Function>
Function* onHostPlatform(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

void countPlatformCalls(int failingCall) {
    calls = 0;
    failed = nullptr;
    failing = failingCall;
}

int platformCalls() {
    return calls;
}

const char* failedPlatformCall() {
    return failed;
}

}  // namespace vaultpad::soak

// The failure is an expression, so that it can fill in what a failing call fills in.
#define FALLIBLE(type, name, parameters, arguments, failure)                                  \
    extern "C" __attribute__((visibility("default"))) type name parameters {                  \
        static auto* const real = vaultpad::soak::onHostPlatform<type parameters>(#name);     \
        return vaultpad::soak::failsNow(#name) ? static_cast<type>(failure) : real arguments; \
    }

FALLIBLE(void*, tzfw_core_initialize_context, (uint32_t * out), (out), nullptr)
FALLIBLE(int, tzfw_core_set_uuid,
         (void* context, uint32_t low, uint16_t mid, uint16_t high, const uint8_t* clockSequenceAndNode),
         (context, low, mid, high, clockSequenceAndNode), -1)
FALLIBLE(int, tzfw_core_open_session, (void* context), (context), -1)
FALLIBLE(int, tzfw_core_close_session, (void* context), (context), -1)
FALLIBLE(void*, tzfw_core_create_shared_memory, (void* context, int type, uint32_t size, int in, int out),
         (context, type, size, in, out), nullptr)
FALLIBLE(int, tzfw_core_write_uint, (void* context, void* block, uint32_t value), (context, block, value), -1)
FALLIBLE(int, tzfw_core_write_string, (void* context, void* block, const char* text), (context, block, text), -1)
FALLIBLE(int, tzfw_core_write_blob, (void* context, void* block, const void* data, uint32_t size),
         (context, block, data, size), -1)
FALLIBLE(int, tzfw_core_invoke_event, (void* context, uint32_t event), (context, event), -1)
FALLIBLE(int, tzfw_core_read_uint, (void* context, void* block, uint32_t* value), (context, block, value), -1)
FALLIBLE(int, tzfw_core_read_blob, (void* context, void* block, void** data, uint32_t size),
         (context, block, data, size), -1)
FALLIBLE(void*, tzfw_tui_create_context, (int* error), (error), (*error = -1, nullptr))
FALLIBLE(void*, tzfw_tui_get_gp_info, (void* context), (context), nullptr)
FALLIBLE(int, vconf_get_int, (const char* key, int* value), (key, value), -1)
FALLIBLE(char*, vconf_get_str, (const char* key), (key), nullptr)
FALLIBLE(int, cynara_initialize, (cynara * *handle, const cynara_configuration* configuration), (handle, configuration),
         -1)
FALLIBLE(int, cynara_check,
         (cynara * handle, const char* client, const char* session, const char* user, const char* privilege),
         (handle, client, session, user, privilege), -1)
FALLIBLE(int, display_rotator_get_status, (int* status), (status), -1)
FALLIBLE(int, KeyRouter_Set_KeyList, (wl_surface * surface, KeyRouter_KeyList* list), (surface, list), 0)
