// Voice clips to the trusted application, and the whole upload that comes before the pad is shown.
#include <vaultpad-platform/trusted-core.h>
#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

#include "audio/voice-guide.h"
#include "communication/tee-client.h"
#include "log.h"

namespace vaultpad::communication {

using audio::VoiceGuide;

std::int32_t TeeClient::send_data_to_ta() {
    CA_LOG_INFO("called;");
    if (init_render_context() != 0) {
        CA_LOG_ERROR("initRenderContext() fail");
        return -1;
    }
    if (!imagesSent_) {
        std::int32_t sent = 0;
        while ((sent = send_image_data()) == 0) {
        }
        if (sent == -1) {
            return -1;
        }
        imagesSent_ = true;
    }
    if (send_image_done() != 0) {
        CA_LOG_ERROR("Failed to send_image_done()");
        return -1;
    }
    if (send_voice_data() != 0) {
        CA_LOG_ERROR("Failed to send_voice_data()");
        return -1;
    }
    return 0;
}

std::int32_t TeeClient::send_voice_data() {
    VoiceGuide& guide = VoiceGuide::instance();
    const std::vector<audio::voice_data> clips = guide.clips();
    if (!guide.enabled()) {
        return 0;
    }
    const std::int32_t count = guide.voiceCount();
    CA_LOG_INFO("[TUI NWD] Send Voice - Count %d", count);
    // The clips are gone after the first transfer while the count stays: a second one has nothing to read.
    if (count > 0 && clips.size() < static_cast<std::size_t>(count)) {
        CA_LOG_ERROR("[TUI NWD] %d voices but only %zu clips", count, clips.size());
        return -1;
    }
    for (std::int32_t start = 0; start < count; start += VAULTPAD_TA_VOICE_BATCH_CLIPS) {
        const std::int32_t batch = std::min<std::int32_t>(VAULTPAD_TA_VOICE_BATCH_CLIPS, count - start);
        void* block = createBlock(VAULTPAD_TA_BLOCK_VOICE_DATA);
        if (block == nullptr || !writeUint(block, static_cast<std::uint32_t>(batch))) {
            return -1;
        }
        for (std::int32_t i = start; i < start + batch; ++i) {
            if (!writeClip(block, clips[static_cast<std::size_t>(i)])) {
                return -1;
            }
        }
        if (!invoke(VAULTPAD_TA_EVENT_VOICE_DATA)) {
            return -1;
        }
        tzfw_core_release_shared_memory(context_, block);
    }
    guide.clips().clear();
    return 0;
}

bool TeeClient::writeClip(void* block, const audio::voice_data& clip) {
    // Above zlib's worst case for every length, the empty clip included.
    const std::size_t bound = 2 * clip.data.size() + 15;
    const std::unique_ptr<Bytef, void (*)(void*)> compressed(static_cast<Bytef*>(std::malloc(bound)), std::free);
    uLongf length = bound;
    const int result =
        compressed ? compress(compressed.get(), &length, clip.data.data(), clip.data.size()) : Z_MEM_ERROR;
    if (result != Z_OK) {
        CA_LOG_ERROR("Failed to compress %d", result);
        return false;
    }
    return writeString(block, clip.id.c_str()) && writeUint(block, static_cast<std::uint32_t>(length)) &&
           writeUint(block, static_cast<std::uint32_t>(clip.data.size())) &&
           writeBlob(block, compressed.get(), static_cast<std::uint32_t>(length));
}

}  // namespace vaultpad::communication
