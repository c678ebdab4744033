#include <gtest/gtest.h>
#include <vaultpad-platform/cynara.h>
#include <vaultpad-platform/trusted-ui.h>

#include <cstring>

#include "host/secure-channel-wire.h"

namespace {

TEST(TrustedUiTest, DescribesTheSecureDisplay) {
    int error = -1;
    void* const context = tzfw_tui_create_context(&error);
    ASSERT_NE(context, nullptr);
    EXPECT_EQ(error, 0);
    ASSERT_EQ(tzfw_tui_get_gp_info_size(), sizeof(VaultPadTuiDescription));
    VaultPadTuiDescription description;
    std::memcpy(&description, tzfw_tui_get_gp_info(context), sizeof description);
    EXPECT_EQ(description.magic, static_cast<uint32_t>(VAULTPAD_TUI_MAGIC));
    EXPECT_EQ(description.version, static_cast<uint32_t>(VAULTPAD_TUI_VERSION));
    EXPECT_EQ(description.width, 1920u);
    EXPECT_EQ(description.height, 1080u);
    EXPECT_EQ(description.pixel_format, static_cast<uint32_t>(VAULTPAD_TUI_ARGB6666));
    tzfw_tui_release_context(context);
}

TEST(TrustedUiTest, DescribesNothingForNullStaleAndForeignContexts) {
    void* const stale = tzfw_tui_create_context(nullptr);
    ASSERT_NE(stale, nullptr);
    tzfw_tui_release_context(stale);
    cynara* foreign = nullptr;
    ASSERT_EQ(cynara_initialize(&foreign, nullptr), 0);
    void* const fresh = tzfw_tui_create_context(nullptr);
    for (void* const bad : {static_cast<void*>(nullptr), stale, static_cast<void*>(foreign)}) {
        EXPECT_EQ(tzfw_tui_get_gp_info(bad), nullptr);
        tzfw_tui_release_context(bad);
    }
    EXPECT_NE(tzfw_tui_get_gp_info(fresh), nullptr);
    tzfw_tui_release_context(fresh);
    EXPECT_EQ(cynara_finish(foreign), 0);
}

}  // namespace
