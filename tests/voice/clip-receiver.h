/* A receiver in the library's place: takes what a voice maker sends. */
#ifndef VAULTPAD_TESTS_VOICE_CLIP_RECEIVER_H
#define VAULTPAD_TESTS_VOICE_CLIP_RECEIVER_H

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <map>
#include <optional>
#include <vector>

#include "voice-maker/wave-file.h"
#include "voice-message.h"

namespace vaultpad::test {

class ClipReceiver {
public:
    ClipReceiver() : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const sockaddr_un address = audio::voiceSocketAddress();
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(socket_, 200), 0);
    }
    ~ClipReceiver() { close(socket_); }
    ClipReceiver(const ClipReceiver&) = delete;
    ClipReceiver& operator=(const ClipReceiver&) = delete;

    /* The next message; nothing when none comes within the time. It must come in one piece. */
    std::optional<audio::VoiceMessage> message(int milliseconds = 10000) const {
        pollfd ready = {socket_, POLLIN, 0};
        if (poll(&ready, 1, milliseconds) != 1) {
            return std::nullopt;
        }
        const int connection = accept(socket_, nullptr, nullptr);
        audio::VoiceMessage message;
        EXPECT_EQ(recv(connection, &message, sizeof(message), 0), static_cast<ssize_t>(sizeof(message)));
        close(connection);
        return message;
    }

    /* The clips, once that many are complete; fewer when they do not come. */
    std::map<int, helpers::Bytes> clips(std::size_t count) const {
        std::map<int, helpers::Bytes> clips;
        for (std::size_t complete = 0; complete < count;) {
            const std::optional<audio::VoiceMessage> message = this->message();
            if (!message) {
                break;
            }
            helpers::Bytes& clip = clips[message->index];
            clip.insert(clip.end(), message->data, message->data + message->length);
            complete += message->final == 1 ? 1u : 0u;
        }
        return clips;
    }

private:
    int socket_;
};

}  // namespace vaultpad::test

#endif
