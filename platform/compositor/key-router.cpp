#include "key-router.h"

#include <cstring>
#include <utility>

#include "resource.h"
#include "tizen-keyrouter-server.h"

namespace vaultpad::compositor {

namespace {

constexpr int kRouterVersion = 1;
/* Releasing a key asks for none. */
constexpr uint32_t kNoMode = 0;

static_assert(static_cast<uint32_t>(KeyResult::kOk) == TIZEN_KEYROUTER_RESULT_OK, "values of the protocol");
static_assert(static_cast<uint32_t>(KeyResult::kInvalidKey) == TIZEN_KEYROUTER_RESULT_INVALID_KEY, "as above");
static_assert(static_cast<uint32_t>(KeyResult::kInvalidMode) == TIZEN_KEYROUTER_RESULT_INVALID_MODE, "as above");
static_assert(static_cast<uint32_t>(KeyResult::kRefused) == TIZEN_KEYROUTER_RESULT_REFUSED, "as above");

KeyRequestHandler& handlerOf(wl_resource* router) {
    return *static_cast<KeyRequestHandler*>(wl_resource_get_user_data(router));
}

/* The last name may come without its NUL. */
std::vector<std::string> unpack(const wl_array* names) {
    std::vector<std::string> result;
    const char* name = static_cast<const char*>(names->data);
    const char* const end = name + names->size;
    while (name < end) {
        result.emplace_back(name, strnlen(name, static_cast<std::size_t>(end - name)));
        name += result.back().size() + 1;
    }
    return result;
}

void answer(wl_client* client, wl_resource* router, uint32_t serial, const KeyRequest& request) {
    std::optional<std::vector<KeyResult>> results;
    if (request.grab && request.mode != TIZEN_KEYROUTER_MODE_EXCLUSIVE) {
        results.emplace(request.names.size(), KeyResult::kInvalidMode);
    } else {
        results = handlerOf(router).handle(client, request);
    }
    if (!results) {
        return;
    }
    auto outcome = KeyResult::kOk;
    for (std::size_t i = 0; i < results->size(); ++i) {
        const KeyResult result = (*results)[i];
        tizen_keyrouter_send_key_result(router, serial, request.names[i].c_str(), static_cast<uint32_t>(result));
        outcome = outcome == KeyResult::kOk ? result : outcome;
    }
    tizen_keyrouter_send_keygrab_result(router, serial, static_cast<uint32_t>(outcome));
}

void setList(wl_client* client, wl_resource* router, uint32_t serial, wl_resource* surface, uint32_t mode,
             wl_array* names) {
    answer(client, router, serial, {true, mode, surface, unpack(names)});
}

void unsetList(wl_client* client, wl_resource* router, uint32_t serial, wl_resource* surface, wl_array* names) {
    answer(client, router, serial, {false, kNoMode, surface, unpack(names)});
}

void destroyRouter(wl_client* client, wl_resource* router) {
    handlerOf(router).released(client);
    wl_resource_destroy(router);
}

}  // namespace

void offerKeyRouter(wl_display* display, KeyRequestHandler& handler) {
    static constexpr struct tizen_keyrouter_interface kRouter = {destroyRouter, setList, unsetList};
    makeGlobal<&tizen_keyrouter_interface, &kRouter>(display, kRouterVersion, &handler);
}

}  // namespace vaultpad::compositor
