#include <vaultpad-platform/cynara.h>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "call-guard.h"
#include "call-trace.h"
#include "handle-table.h"
#include "television.h"

namespace {

using vaultpad::host::kFailure;
using vaultpad::host::PrivilegeRule;
using vaultpad::host::Television;

constexpr int kDenied = 1;

/* Nothing is kept for a connection but that it is open. */
struct Connection {};

using Connections = vaultpad::host::HandleTable<Connection>;

/* The kernel's text of a label ends in a newline under some security modules. */
std::string_view withoutTrailingSpace(std::string_view text) {
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

bool matches(const std::string& field, std::string_view value) {
    return field == "*" || field == value;
}

bool isAllowed(const Television& television, std::string_view client, std::string_view user,
               std::string_view privilege) {
    const auto applies = [&](const PrivilegeRule& rule) {
        return matches(rule.client, client) && matches(rule.user, user) && matches(rule.privilege, privilege);
    };
    if (std::any_of(television.deny.begin(), television.deny.end(), applies)) {
        return false;
    }
    return television.allowByDefault || std::any_of(television.allow.begin(), television.allow.end(), applies);
}

}  // namespace

int cynara_initialize(cynara** handle, const cynara_configuration*) {
    const vaultpad::host::CallTrace trace(__func__);
    if (handle == nullptr) {
        return kFailure;
    }
    return vaultpad::host::orFailure(kFailure, [handle]() {
        *handle = static_cast<cynara*>(Connections::instance().add(std::make_shared<Connection>()));
        return 0;
    });
}

int cynara_check(cynara* handle, const char* client, const char* client_session, const char* user,
                 const char* privilege) {
    const vaultpad::host::CallTrace trace(__func__);
    const auto settings = vaultpad::host::television();
    if (!settings || !Connections::instance().find(handle) || client == nullptr || client_session == nullptr ||
        user == nullptr || privilege == nullptr) {
        return kFailure;
    }
    return isAllowed(*settings, withoutTrailingSpace(client), user, privilege) ? VAULTPAD_CYNARA_ALLOWED : kDenied;
}

int cynara_finish(cynara* handle) {
    return Connections::instance().take(handle) ? 0 : kFailure;
}
