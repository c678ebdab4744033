#include <vaultpad-platform/trusted-ui.h>

#include <memory>

#include "call-guard.h"
#include "call-trace.h"
#include "handle-table.h"
#include "secure-channel-wire.h"

namespace {

using Descriptions = vaultpad::host::HandleTable<VaultPadTuiDescription>;

constexpr uint32_t kScreenWidth = 1920;
constexpr uint32_t kScreenHeight = 1080;

}  // namespace

void* tzfw_tui_create_context(int* error) {
    const vaultpad::host::CallTrace trace(__func__);
    void* const context = vaultpad::host::orFailure(static_cast<void*>(nullptr), []() {
        return Descriptions::instance().add(std::make_shared<VaultPadTuiDescription>(VaultPadTuiDescription{
            VAULTPAD_TUI_MAGIC, VAULTPAD_TUI_VERSION, kScreenWidth, kScreenHeight, VAULTPAD_TUI_ARGB6666}));
    });
    if (error != nullptr) {
        *error = context == nullptr ? vaultpad::host::kFailure : 0;
    }
    return context;
}

void* tzfw_tui_get_gp_info(void* tui_context) {
    return Descriptions::instance().find(tui_context).get();
}

uint32_t tzfw_tui_get_gp_info_size(void) {
    return sizeof(VaultPadTuiDescription);
}

void tzfw_tui_release_context(void* tui_context) {
    Descriptions::instance().take(tui_context);
}
