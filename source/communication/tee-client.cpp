#include "communication/tee-client.h"

#include <vaultpad-platform/trusted-core.h>
#include <vaultpad-platform/trusted-ui.h>

#include <cstdlib>

#include "communication/screen-origin.h"
#include "log.h"

namespace vaultpad::communication {

TeeClient::TeeClient() = default;

TeeClient::~TeeClient() {
    for (std::int32_t i = 0; i < imageCount_; ++i) {
        std::free(images_[i].pixels);
    }
}

std::int32_t TeeClient::init() {
    if (sessionOpen_) {
        return 0;
    }
    std::uint32_t ignored = 0;
    context_ = tzfw_core_initialize_context(&ignored);
    if (context_ == nullptr) {
        CA_LOG_ERROR("tzfw_core_initialize_context() fail");
        return -1;
    }
    // After a failure the finalized handle stays in the member; nothing reads it while the session is not open.
    const std::uint8_t clockSeqAndNode[] = VAULTPAD_TA_UUID_CLOCK_SEQ_AND_NODE;
    if (tzfw_core_set_uuid(context_, VAULTPAD_TA_UUID_TIME_LOW, VAULTPAD_TA_UUID_TIME_MID,
                           VAULTPAD_TA_UUID_TIME_HI_AND_VERSION, clockSeqAndNode) != 0) {
        CA_LOG_ERROR("Failed call tzfw_core_set_uuid");
        tzfw_core_finalize_context(context_);
        return -1;
    }
    if (tzfw_core_open_session(context_) != 0) {
        CA_LOG_ERROR("Failed tzfw_core_open_session()");
        tzfw_core_finalize_context(context_);
        return -1;
    }
    sessionOpen_ = true;
    imagesSent_ = false;
    return 0;
}

std::int32_t TeeClient::exit() {
    CA_LOG_INFO("called;");
    if (!sessionOpen_) {
        return 0;
    }
    if (context_ != nullptr) {
        tzfw_core_close_session(context_);
        tzfw_core_finalize_context(context_);
        context_ = nullptr;
    }
    if (tuiContext_ != nullptr) {
        tzfw_tui_release_context(tuiContext_);
        tuiContext_ = nullptr;
    }
    sessionOpen_ = false;
    return 0;
}

std::int32_t TeeClient::send_ime_type(int type, int extra, int enlarge, int highcontrast, int oMode) {
    CA_LOG_INFO("type : %d / extra : %d / enlarge : %d / highcontrast : %d / oMode : %d / orientation_ : %d", type,
                extra, enlarge, highcontrast, oMode, orientation_);
    void* block = createBlock(VAULTPAD_TA_BLOCK_IME_TYPE);
    if (block == nullptr || !writeSetting(block, "t_type", type) || !writeSetting(block, "t_extra", extra) ||
        !writeSetting(block, "isEnlarge", enlarge) || !writeSetting(block, "isHighcontrast", highcontrast) ||
        !writeSetting(block, "t_oMode", oMode) || !writeSetting(block, "orientation_", orientation_)) {
        return -1;
    }
    const ScreenOrigin* origin = findScreenOrigin(type, enlarge, orientation_);
    if (origin == nullptr) {
        CA_LOG_ERROR("wrong ime type and wrong enlarge mode (type : %d, enlarge : %d)", type, enlarge);
        return -1;
    }
    // Only the extent of the current orientation is written; the other keeps what an earlier call left: intended.
    if (orientation_ == VAULTPAD_TA_ORIENTATION_PORTRAIT) {
        rotationHeight_ = origin->rotationExtent;
    } else if (orientation_ == VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED) {
        rotationWidth_ = origin->rotationExtent;
    }
    if (!writeSetting(block, "base_x", origin->x) || !writeSetting(block, "base_y", origin->y) ||
        !invoke(VAULTPAD_TA_EVENT_IME_TYPE)) {
        return -1;
    }
    tzfw_core_release_shared_memory(context_, block);
    return 0;
}

std::int32_t TeeClient::send_public_key(unsigned int keyWord1, unsigned int keyWord2, void* keyBlob,
                                        unsigned int keyPart1Length, unsigned int keyPart2Length, void* auxBlob,
                                        unsigned int auxLength) {
    void* block = createBlock(VAULTPAD_TA_BLOCK_PUBLIC_KEY);
    if (block == nullptr || !writeUint(block, keyWord1) || !writeUint(block, keyWord2) ||
        !writeUint(block, keyPart1Length) || !writeUint(block, keyPart2Length)) {
        return -1;
    }
    // A sum that wraps must not pass for a short key.
    const std::uint32_t keyLength =
        keyPart2Length <= UINT32_MAX - keyPart1Length ? keyPart1Length + keyPart2Length : UINT32_MAX;
    if (!writeBlob(block, keyBlob, keyLength) || !writeUint(block, auxLength) ||
        !writeBlob(block, auxBlob, auxLength) || !invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY)) {
        return -1;
    }
    tzfw_core_release_shared_memory(context_, block);
    return 0;
}

std::int32_t TeeClient::show() {
    CA_LOG_INFO("called;");
    return sendEmptyEvent(VAULTPAD_TA_EVENT_SHOW, VAULTPAD_TA_BLOCK_SHOW, true);
}

std::int32_t TeeClient::send_image_done() {
    CA_LOG_INFO("called;");
    return sendEmptyEvent(VAULTPAD_TA_EVENT_IMAGE_DONE, VAULTPAD_TA_BLOCK_IMAGE_DONE, true);
}

std::int32_t TeeClient::send_refresh_loading_bar() {
    return sendEmptyEvent(VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR, VAULTPAD_TA_BLOCK_REFRESH_LOADING_BAR, false);
}

std::int32_t TeeClient::sendEmptyEvent(std::uint32_t event, std::uint32_t blockSize, bool releaseAfterFailure) {
    void* block = createBlock(blockSize);
    if (block == nullptr) {
        return -1;
    }
    const bool accepted = invoke(event);
    if (accepted || releaseAfterFailure) {
        tzfw_core_release_shared_memory(context_, block);
    }
    return accepted ? 0 : -1;
}

std::int32_t TeeClient::send_key_event(int event_type, int key_code, AppResult* result, bool* button_pressed,
                                       bool* closed) {
    void* request = createBlock(VAULTPAD_TA_BLOCK_KEY_REQUEST);
    if (request == nullptr) {
        return -1;
    }
    void* answer = createBlock(VAULTPAD_TA_BLOCK_KEY_ANSWER);
    if (answer == nullptr || !writeUint(request, static_cast<std::uint32_t>(event_type)) ||
        !writeUint(request, static_cast<std::uint32_t>(key_code)) || !invoke(VAULTPAD_TA_EVENT_KEY) ||
        !readAnswer(answer, result, button_pressed, closed)) {
        return -1;
    }
    tzfw_core_release_shared_memory(context_, answer);
    tzfw_core_release_shared_memory(context_, request);
    return 0;
}

}  // namespace vaultpad::communication
