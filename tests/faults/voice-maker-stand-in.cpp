#include "voice-maker-stand-in.h"

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>

#include "allocation-seam.h"
#include "audio/voice-message.h"

namespace vaultpad::test {

namespace {

constexpr char kSound[] = "a sound";

bool sendClip(int index) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = audio::voiceSocketAddress();
    bool sent = connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
    if (sent) {
        static audio::VoiceMessage message;
        message.index = index;
        message.length = sizeof(kSound);
        message.final = 1;
        std::memcpy(message.data, kSound, sizeof(kSound));
        sent = send(socket, &message, sizeof(message), MSG_NOSIGNAL) == sizeof(message);
    }
    close(socket);
    return sent;
}

}  // namespace

void VoiceMakerStandIn::start(int clips) {
    stopping_ = false;
    thread_ = std::thread([this, clips] { sendClips(clips); });
}

void VoiceMakerStandIn::stop() {
    stopping_ = true;
    if (thread_.joinable()) {
        thread_.join();
    }
}

void VoiceMakerStandIn::sendClips(int clips) const {
    const OutsideLibrary outside;
    for (int index = 0; index < clips && !stopping_;) {
        if (sendClip(index)) {
            ++index;
        } else {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
}

}  // namespace vaultpad::test
