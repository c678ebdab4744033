/* The voice guide: speaks the focused key's label. Built, and dormant while getVoiceEnableStatus() says so. */
#ifndef VAULTPAD_SOURCE_AUDIO_VOICE_GUIDE_H
#define VAULTPAD_SOURCE_AUDIO_VOICE_GUIDE_H

#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <memory>
#include <string>
#include <vector>

#include "context/element-container.h"

namespace vaultpad::audio {

/* One synthesised clip. */
struct voice_data {
    std::string id;                 /* the voice element's id, by which the trusted application finds the clip */
    std::vector<std::uint8_t> data; /* as the voice maker sent it */
};

/*
 * A process-wide singleton, made wherever it is first needed. Everything runs on the controller's thread but the
 * receiver task, which writes clip data only; the controller reads clips only after waitComplete().
 */
class VoiceGuide {
public:
    /* Finds the singleton, or makes it. */
    static VoiceGuide& instance();

    /* Deletes the singleton, if any. Wakes a receiver that still waits for connections, so that it ends. */
    static void destroy();

    VoiceGuide() = default;
    ~VoiceGuide();
    VoiceGuide(const VoiceGuide&) = delete;
    VoiceGuide& operator=(const VoiceGuide&) = delete;

    /* The one place that decides whether the guide may run: 0 no, else yes. In a unit of its own. */
    static int getVoiceEnableStatus();

    /* Returns 1 when audio goes, or may go, to a network speaker; else 0. Stops Bluetooth streaming on the way. */
    int isConnectNetworkSpeaker();

    /* Decides enabled(). */
    void initialize();

    /* Makes room for the type's clips, starts the receiver and the voice maker. Throws what parseAudio() throws. */
    void create(int type);

    /* Names the clips and starts the voice maker. */
    void createVoice(std::shared_ptr<context::ElementContainer> container, int type);

    /* Waits for the clips, at most waitLimit; after that the guide is off and the voice maker killed. */
    void waitComplete();

    /* Appends length bytes to the clip. */
    void setVoiceDataListData(const unsigned char* data, int index, int length);

    /*
     * Receives clips on a listening socket until all are complete: 0. -1 when no connection can be accepted, or when
     * the guide no longer waits. A message that does not fit the clips is dropped, and completes none.
     */
    int recvVoiceData(int socket);

    bool enabled() const { return enabled_; }
    bool networkSpeaker() const { return networkSpeaker_; }
    std::int32_t voiceCount() const { return voiceCount_; }
    std::vector<voice_data>& clips() { return clips_; }

    static VoiceGuide* voiceGuide;

    /* How long waitComplete() waits. */
    static std::chrono::nanoseconds waitLimit;

private:
    int receive();
    bool takeMessage(int connection);
    void awaitMessage(int connection);
    void drop(const char* reason, int index, int length);
    void wakeReceiver();
    void giveUp();

    bool enabled_ = false;
    std::int32_t voiceCount_ = 0;
    bool networkSpeaker_ = false;
    std::int32_t makerPid_ = -1;
    std::vector<voice_data> clips_;
    std::future<int> result_;
    std::atomic<bool> stopping_{false};

    /* The receiver's own: how long it still waits for connections that say nothing, and what it has dropped. */
    std::chrono::nanoseconds patience_{0};
    int dropped_ = 0;
};

}  // namespace vaultpad::audio

#endif
