/* A voice guide that may run, and a trusted application that reads its clips. */
#ifndef VAULTPAD_TESTS_FUZZ_VOICE_FIXTURE_H
#define VAULTPAD_TESTS_FUZZ_VOICE_FIXTURE_H

#include <string>
#include <vector>

#include "audio/voice-guide.h"
#include "audio/voice-message.h"
#include "temporary-folder.h"

namespace vaultpad::fuzz {

class VoiceFixture {
public:
    /* A guide that expects clips for so many voices. */
    explicit VoiceFixture(int voices);

    /* Starts the receiver. */
    static void create();

    /* Sends one message; false when nobody listens any more. */
    static bool send(const void* message, std::size_t size);

    /* Ends all clips that are still open, and waits for the receiver. */
    static void complete();

    /*
     * Sends the guide's clips to the trusted application's reader, which refuses what is no sound. Aborts when what
     * arrived is not what was sent. Returns whether every clip was taken.
     */
    static bool upload();

private:
    test::TemporaryFolder folder_;
};

}  // namespace vaultpad::fuzz

#endif
