// The receiver task: one connection per message, until every clip is complete.
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <memory>

#include "audio/voice-guide.h"
#include "audio/voice-message.h"
#include "log.h"

namespace vaultpad::audio {

namespace {

constexpr int kBacklog = 200;
// A peer that connects and says nothing must not hold up the others.
constexpr timeval kMessageTimeout = {2, 0};
constexpr std::chrono::milliseconds kWakeInterval{10};

int openListeningSocket() {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener < 0) {
        return -1;
    }
    const sockaddr_un address = voiceSocketAddress();
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener, kBacklog) != 0) {
        close(listener);
        return -1;
    }
    return listener;
}

// Every local socket knows its peer; what does not is no connection of another user.
bool isOtherUser(int connection) {
    ucred peer{};
    socklen_t size = sizeof(peer);
    return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid != getuid();
}

}  // namespace

int VoiceGuide::receive() {
    return recvVoiceData(openListeningSocket());
}

int VoiceGuide::recvVoiceData(int socket) {
    const std::int32_t count = voiceCount_;
    for (std::int32_t done = 0; done < count;) {
        const int connection = stopping_ ? -1 : accept(socket, nullptr, nullptr);
        if (connection < 0 || stopping_) {
            CA_LOG_ERROR("[TUI NWD] Failed to open voice socket");
            if (connection >= 0) {
                close(connection);
            }
            if (socket >= 0) {
                close(socket);
            }
            return -1;
        }
        if (takeMessage(connection)) {
            ++done;
        }
    }
    if (socket >= 0) {
        close(socket);
    }
    return 0;
}

// Reads and closes the connection; returns true when it brought the last chunk of a clip.
bool VoiceGuide::takeMessage(int connection) {
    // Zeroed for each message, so that none ever carries bytes of an earlier one.
    const auto message = std::make_unique<VoiceMessage>();
    const bool trusted = !isOtherUser(connection);
    if (trusted) {
        setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &kMessageTimeout, sizeof(kMessageTimeout));
        recv(connection, message.get(), sizeof(*message), 0);
    }
    close(connection);
    if (!trusted) {
        CA_LOG_ERROR("[TUI NWD] Voice connection of another user is refused");
        return false;
    }
    if (message->index < 0 || message->index >= voiceCount_ || message->length < 0 ||
        message->length > kVoiceMessageCapacity) {
        CA_LOG_ERROR("[TUI NWD] Voice message is dropped : index %d of %d, length %d", message->index, voiceCount_,
                     message->length);
        return false;
    }
    setVoiceDataListData(message->data, message->index, message->length);
    return message->final == 1;
}

void VoiceGuide::setVoiceDataListData(const unsigned char* data, int index, int length) {
    std::vector<std::uint8_t>& clip = clips_[static_cast<std::size_t>(index)].data;
    clip.insert(clip.end(), data, data + length);
}

// A receiver left over from a time-out sits in accept(), and releasing its future waits for it: connections of our own
// bring it back until it has seen that it must stop. The receiver may not have bound its socket yet, hence the loop.
void VoiceGuide::wakeReceiver() {
    stopping_ = true;
    while (result_.valid() && result_.wait_for(kWakeInterval) == std::future_status::timeout) {
        const int wake = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_un address = voiceSocketAddress();
        connect(wake, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        close(wake);
    }
}

}  // namespace vaultpad::audio
