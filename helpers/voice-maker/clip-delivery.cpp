#include "voice-maker/clip-delivery.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

namespace vaultpad::helpers {

namespace {

constexpr std::chrono::milliseconds kRetryInterval{10};
// The library's patience with all clips together is longer than this for one message.
constexpr timeval kSendTimeout = {10, 0};

}  // namespace

ClipDelivery::ClipDelivery(const EndWatch& watch, pid_t receiver, std::chrono::milliseconds patience)
    : watch_(watch), receiver_(receiver), deadline_(std::chrono::steady_clock::now() + patience) {}

bool ClipDelivery::deliver(int index, const Bytes& clip) {
    std::size_t sent = 0;
    do {
        const std::size_t length = std::min<std::size_t>(clip.size() - sent, audio::kVoiceMessageCapacity);
        const auto message = std::make_unique<audio::VoiceMessage>();
        message->index = index;
        message->length = static_cast<std::int32_t>(length);
        std::copy_n(clip.begin() + static_cast<std::ptrdiff_t>(sent), length, message->data);
        sent += length;
        message->final = sent == clip.size() ? 1 : 0;
        if (!send(*message)) {
            return false;
        }
    } while (sent < clip.size());
    return true;
}

// The receiver reads once, so the message has to be there in one piece: one call, which takes all or fails.
bool ClipDelivery::send(const audio::VoiceMessage& message) {
    const int socket = connection();
    if (socket < 0) {
        std::fprintf(stderr,
                     "vault-voice-maker: nobody receives clips: the pad that started this is gone or did "
                     "not wait\n");
        return false;
    }
    const bool sent = ::send(socket, &message, sizeof(message), MSG_NOSIGNAL) == static_cast<ssize_t>(sizeof(message));
    if (!sent) {
        std::fprintf(stderr, "vault-voice-maker: a clip was not taken: the receiver closed the connection\n");
    }
    close(socket);
    return sent;
}

int ClipDelivery::connection() {
    for (;;) {
        const int socket = tryToConnect();
        if (socket >= 0) {
            connected_ = true;
            return socket;
        }
        if (connected_ || std::chrono::steady_clock::now() >= deadline_ || watch_.endsWithin(kRetryInterval)) {
            return -1;
        }
    }
}

// The name belongs to the whole host: what listens there may be another client's pad, which wants its own clips.
int ClipDelivery::tryToConnect() const {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &kSendTimeout, sizeof(kSendTimeout));
    const sockaddr_un address = audio::voiceSocketAddress();
    ucred peer{};
    socklen_t size = sizeof(peer);
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0 &&
        getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.pid == receiver_) {
        return socket;
    }
    close(socket);
    return -1;
}

}  // namespace vaultpad::helpers
