// Voice output player: a program that plays what it finds on its standard input.
#ifndef VAULTPAD_SECURE_WORLD_VOICE_PLAYER_VOICE_H
#define VAULTPAD_SECURE_WORLD_VOICE_PLAYER_VOICE_H

#include <sys/types.h>

#include <string>
#include <vector>

#include "log.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {

// Starts the program once for each focus, without arguments and without a shell. Its standard input is a file in memory
// that holds one WAV file; it gets no other file of this process. It is killed when the focus moves on, and with this
// process.
class PlayerVoice : public VoiceOutput {
public:
    // Throws std::runtime_error when there is no such program. log must outlive the output.
    PlayerVoice(std::string program, Log* log);
    ~PlayerVoice() override { stop(); }
    PlayerVoice(const PlayerVoice&) = delete;
    PlayerVoice& operator=(const PlayerVoice&) = delete;

    void speak(const std::vector<VoiceClip>& clips) override;

private:
    void start(const Sound& sound);
    void stop();
    void tellFailure();

    std::string program_;
    Log* log_;
    pid_t process_ = 0;         // also its process group; 0: none
    bool failureTold_ = false;  // once is enough: a player that fails does so for every key
};

}  // namespace vaultpad::secureworld

#endif
