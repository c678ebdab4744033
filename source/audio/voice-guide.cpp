#include "audio/voice-guide.h"

#include <signal.h>
#include <unistd.h>
#include <vaultpad-platform/bt-audio.h>
#include <vaultpad-platform/sound-manager.h>
#include <vaultpad-platform/vconf.h>

#include <cstdio>
#include <type_traits>

#include "audio/voice-message.h"
#include "context/application-context-parser.h"
#include "helper-paths.h"
#include "log.h"

namespace vaultpad::audio {

static_assert(
    std::is_same_v<context::ElementContainer::Map, VoiceCollection<context::ElementContainer::Map::mapped_type>>,
    "the voice maker counts the clips in the same order");

VoiceGuide* VoiceGuide::voiceGuide = nullptr;
std::chrono::nanoseconds VoiceGuide::waitLimit = std::chrono::seconds(30);

VoiceGuide& VoiceGuide::instance() {
    if (voiceGuide == nullptr) {
        voiceGuide = new VoiceGuide;
    }
    return *voiceGuide;
}

void VoiceGuide::destroy() {
    delete voiceGuide;
    voiceGuide = nullptr;
}

VoiceGuide::~VoiceGuide() {
    wakeReceiver();
}

int VoiceGuide::isConnectNetworkSpeaker() {
    int selection = 0;
    if (sound_manager_get_speaker_selection(&selection) != 0) {
        CA_LOG_ERROR("[TUI NWD] Failed to get output_route");
        return 1;
    }
    if (static_cast<unsigned int>(selection) > VAULTPAD_SPEAKER_LAST_LOCAL) {
        CA_LOG_ERROR("[TUI NWD] Connect Network Speaker : %d", selection);
        return 1;
    }
    int status = 0;
    if (vconf_get_int("memory/bluetooth/stream_status", &status) != 0) {
        CA_LOG_ERROR("[TUI NWD] Failed to get VCONF_BT_STATUS");
        return 1;
    }
    if (status != 0) {
        const int stopped = bt_audio_stop_streaming();
        if (stopped != 0 && stopped != VAULTPAD_BT_NOT_STREAMING) {
            CA_LOG_ERROR("[TUI NWD] Failed to stop streaming - BT : 0x%08x", static_cast<unsigned int>(stopped));
            return 1;
        }
    }
    return 0;
}

void VoiceGuide::initialize() {
    networkSpeaker_ = false;
    enabled_ = getVoiceEnableStatus() != 0;
    if (!enabled_) {
        CA_LOG_INFO("[TUI NWD] Disable voice guide");
        return;
    }
    if (isConnectNetworkSpeaker() == 0) {
        CA_LOG_INFO("[TUI NWD] Enable voice guide");
        return;
    }
    enabled_ = false;
    networkSpeaker_ = true;
}

void VoiceGuide::create(int type) {
    if (!enabled_) {
        return;
    }
    context::ApplicationContextParser parser;
    const std::shared_ptr<context::ElementContainer> container = parser.parseAudio(type);
    // A receiver of an abandoned start-up holds the socket and writes into the clips: it has to end first.
    wakeReceiver();
    voiceCount_ = static_cast<std::int32_t>(container->getVoices()->size());
    clips_.resize(static_cast<std::size_t>(voiceCount_));
    stopping_ = false;
    result_ = std::async([this] { return receive(); });
    createVoice(container, type);
}

void VoiceGuide::createVoice(std::shared_ptr<context::ElementContainer> container, int type) {
    char typeText[10];
    std::snprintf(typeText, sizeof(typeText), "%d", type);
    std::size_t i = 0;
    for (const auto& [id, voice] : *container->getVoices()) {
        clips_[i++].id = voice->attribute("id");
    }
    const char* const path = voiceMakerPath();
    makerPid_ = fork();
    if (makerPid_ == 0) {
        execl(path, path, "vaultpad", typeText, static_cast<char*>(nullptr));
        // Without a voice maker nothing else may run in the child: the clips then time out in the parent.
        _exit(127);
    }
}

void VoiceGuide::waitComplete() {
    if (!enabled_) {
        return;
    }
    if (!result_.valid()) {
        throw std::future_error(std::future_errc::no_state);
    }
    const auto deadline = std::chrono::system_clock::now() + waitLimit;
    if (result_.wait_until(deadline) != std::future_status::ready || result_.get() < 0) {
        giveUp();
    }
}

void VoiceGuide::giveUp() {
    CA_LOG_ERROR("[TUI NWD] Time out : Voice create ");
    // Without a maker there is nobody to kill; -1 would mean every process.
    if (makerPid_ > 0) {
        kill(makerPid_, SIGKILL);
    }
    // The receiver writes into the clips: it has to end before they go.
    wakeReceiver();
    clips_.clear();
    enabled_ = false;
}

}  // namespace vaultpad::audio
