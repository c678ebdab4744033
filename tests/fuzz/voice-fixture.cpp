#include "voice-fixture.h"

#include <sys/socket.h>
#include <unistd.h>
#include <vaultpad/ta-protocol.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "byte-core.h"
#include "communication/tee-client.h"
#include "fuzzer.h"
#include "libc-double.h"
#include "platform-double.h"
#include "request.h"
#include "session/refusal.h"
#include "voice-decision-double.h"

namespace vaultpad::fuzz {

namespace {

using audio::voice_data;
using audio::VoiceGuide;
using secureworld::VoiceClip;

constexpr int kConnectAttempts = 2000;

int connectedSocket(int attempts) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = audio::voiceSocketAddress();
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
            return socket;
        }
        std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
    close(socket);
    return -1;
}

}  // namespace

VoiceFixture::VoiceFixture(int voices) {
    std::string xml = "<audio><voices>";
    for (int i = 0; i < voices; ++i) {
        xml += "<voice id=\"" + std::to_string(i) + "\"/>";
    }
    folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", xml + "</voices></audio>");
    test::platform().television.applicationRoot = folder_.path();
    test::platform().television.settings["memory/bluetooth/stream_status"] = 0;
    test::libc().processesAreFake = true;
    test::voiceDecision = 1;
    VoiceGuide::instance().initialize();
}

void VoiceFixture::create() {
    test::platform().clearJournal();
    test::platform().clearLog();
    test::libc().boundAddresses.clear();
    VoiceGuide::instance().clips().clear();
    VoiceGuide::instance().create(1);
    // The receiver has bound its socket when a connection is taken; one that says nothing is dropped.
    close(connectedSocket(kConnectAttempts));
}

bool VoiceFixture::send(const void* message, std::size_t size) {
    const int socket = connectedSocket(1);
    if (socket < 0) {
        return false;
    }
    ::send(socket, message, size, MSG_NOSIGNAL);
    close(socket);
    return true;
}

void VoiceFixture::complete() {
    audio::VoiceMessage last = {};
    last.final = 1;
    while (send(&last, sizeof(last))) {
    }
    VoiceGuide::instance().waitComplete();
    require(VoiceGuide::instance().enabled());
}

bool VoiceFixture::upload() {
    const std::vector<voice_data> sent = VoiceGuide::instance().clips();
    std::size_t arrived = 0;
    byteCore() = {};
    byteCore().onEvent = [&](std::uint32_t event, const std::vector<std::uint8_t>& bytes) {
        require(event == VAULTPAD_TA_EVENT_VOICE_DATA);
        try {
            for (const VoiceClip& clip : secureworld::readVoiceClips(requestOf(bytes))) {
                require(clip.id == sent[arrived].id.c_str());
                require(clip.sound ? *clip.sound == sent[arrived].data : sent[arrived].data.empty());
                ++arrived;
            }
        } catch (const secureworld::Refusal&) {
            return -1;
        }
        return 0;
    };
    communication::TeeClient client;
    const bool accepted = client.send_voice_data() == 0;
    require(!accepted || arrived == sent.size());
    return accepted;
}

}  // namespace vaultpad::fuzz
