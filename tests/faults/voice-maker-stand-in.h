/* A voice maker on a thread: sends one finished clip for each voice as soon as somebody listens. */
#ifndef VAULTPAD_TESTS_FAULTS_VOICE_MAKER_STAND_IN_H
#define VAULTPAD_TESTS_FAULTS_VOICE_MAKER_STAND_IN_H

#include <atomic>
#include <thread>

namespace vaultpad::test {

class VoiceMakerStandIn {
public:
    VoiceMakerStandIn() = default;
    ~VoiceMakerStandIn() { stop(); }
    VoiceMakerStandIn(const VoiceMakerStandIn&) = delete;
    VoiceMakerStandIn& operator=(const VoiceMakerStandIn&) = delete;

    void start(int clips);
    void stop();

private:
    void sendClips(int clips) const;

    std::atomic<bool> stopping_{false};
    std::thread thread_;
};

}  // namespace vaultpad::test

#endif
