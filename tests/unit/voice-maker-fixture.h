/* A guide that may run, and a voice maker that a test plays. */
#ifndef VAULTPAD_TESTS_UNIT_VOICE_MAKER_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_VOICE_MAKER_FIXTURE_H

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include "audio/voice-guide.h"
#include "audio/voice-message.h"
#include "platform-test.h"
#include "temporary-folder.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

using audio::VoiceGuide;
using audio::VoiceMessage;

constexpr int kFinal = 1;
constexpr int kMakerPid = 4242;

class VoiceMakerTest : public PlatformTest {
protected:
    VoiceMakerTest() {
        platform().television.applicationRoot = folder_.path();
        platform().television.settings["memory/bluetooth/stream_status"] = 0;
        writeVoices({"a", "b", "c"});
        libc().processesAreFake = true;
        libc().helperPid = kMakerPid;
        voiceDecision = 1;
        guide().initialize();
        platform().clearJournal();
        platform().clearLog();
    }
    ~VoiceMakerTest() override { VoiceGuide::waitLimit = limit_; }

    void writeVoices(const Strings& ids) const {
        std::string xml = "<audio><voices>";
        for (const std::string& id : ids) {
            xml += "<voice id=\"" + id + "\"/>";
        }
        folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", xml + "</voices></audio>");
    }

    static VoiceGuide& guide() { return VoiceGuide::instance(); }

    /* Connects to the guide's socket; -1 when nobody listens, or the backlog is full. */
    static int tryToConnect() {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        const sockaddr_un address = audio::voiceSocketAddress();
        if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            close(socket);
            return -1;
        }
        return socket;
    }

    /* Connects to the guide's socket, which its thread may still have to bind. */
    static int connection() {
        for (int attempt = 0; attempt < 500; ++attempt) {
            const int socket = tryToConnect();
            if (socket >= 0) {
                return socket;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        ADD_FAILURE() << "nobody listens for clips";
        return -1;
    }

    static void sendBytes(const void* bytes, std::size_t size) {
        const int socket = connection();
        EXPECT_EQ(send(socket, bytes, size, MSG_NOSIGNAL), static_cast<ssize_t>(size));
        close(socket);
    }

    static void sendChunk(int index, const std::string& text, int final, int length = -1) {
        VoiceMessage message{};
        message.index = index;
        message.length = length < 0 ? static_cast<int>(text.size()) : length;
        message.final = final;
        std::memcpy(message.data, text.data(), text.size());
        sendBytes(&message, sizeof(message));
    }

    static std::string clip(std::size_t index) {
        const Bytes& data = guide().clips()[index].data;
        return {data.begin(), data.end()};
    }

    TemporaryFolder folder_;

private:
    const std::chrono::nanoseconds limit_ = VoiceGuide::waitLimit;
};

}  // namespace vaultpad::test

#endif
