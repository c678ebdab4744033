// The receiver task: one connection per message, until every clip is complete.
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>
#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <memory>

#include "audio/voice-guide.h"
#include "audio/voice-message.h"
#include "log.h"

namespace vaultpad::audio {

namespace {

constexpr int kBacklog = 200;
// Connections that say nothing must not hold up the others: all of them together get this much time, and then each one
// the least time, so that even a full backlog of them leaves the voice maker most of its thirty seconds.
constexpr std::chrono::nanoseconds kPatience = std::chrono::seconds(2);
constexpr std::chrono::nanoseconds kLeastPatience = std::chrono::milliseconds(20);
// How soon a receiver that waits for a message sees that it must stop.
constexpr int kWaitSliceMilliseconds = 10;
// recv() comes after the wait, so it finds the message there, or there is none.
constexpr timeval kReceiveTimeout = {0, 1000};
constexpr std::chrono::milliseconds kWakeInterval{10};
// A hostile peer could fill the log otherwise.
constexpr int kLoggedDrops = 16;

// Nothing checks that a batch fits its block: the clips' capacity must see to it. Text that does not compress grows by
// less than a thousandth, and an id is short.
constexpr int kClipOverhead = kVoiceClipCapacity / 1000 + 1024;
static_assert(VAULTPAD_TA_VOICE_BATCH_CLIPS * (kVoiceClipCapacity + kClipOverhead) <= VAULTPAD_TA_BLOCK_VOICE_DATA,
              "a batch of the largest clips fits its block");

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
    return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid != geteuid();
}

// Closed when it goes, also when memory runs out: a socket left behind would keep the address from the next session.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() { reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    void reset() {
        if (number_ >= 0) {
            close(number_);
        }
        number_ = -1;
    }

private:
    int number_;
};

}  // namespace

int VoiceGuide::receive() {
    // The client's signal handlers are not to run here, nor to interrupt accept(), which would count as a failure.
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
    return recvVoiceData(openListeningSocket());
}

int VoiceGuide::recvVoiceData(int socket) {
    const Descriptor listener(socket);
    const std::int32_t count = voiceCount_;
    patience_ = kPatience;
    dropped_ = 0;
    for (std::int32_t done = 0; done < count;) {
        const int connection = stopping_ ? -1 : accept(socket, nullptr, nullptr);
        if (connection < 0 || stopping_) {
            CA_LOG_ERROR("[TUI NWD] Failed to open voice socket");
            if (connection >= 0) {
                close(connection);
            }
            return -1;
        }
        if (takeMessage(connection)) {
            ++done;
        }
    }
    return 0;
}

// Reads and closes the connection; returns true when it brought the last chunk of a clip. Exactly one recv() reads it,
// and what that returns is not looked at, which is intended: what a short message leaves out is zero.
bool VoiceGuide::takeMessage(int connection) {
    Descriptor owned(connection);
    // Zeroed for each message, so that none ever carries bytes of an earlier one.
    const auto message = std::make_unique<VoiceMessage>();
    const bool trusted = !isOtherUser(connection);
    if (trusted) {
        awaitMessage(connection);
        recv(connection, message.get(), sizeof(*message), 0);
    }
    owned.reset();
    if (!trusted) {
        drop("another user", message->index, message->length);
        return false;
    }
    if (message->index < 0 || message->index >= voiceCount_ || message->length < 0 ||
        message->length > kVoiceMessageCapacity) {
        drop("no such clip or length", message->index, message->length);
        return false;
    }
    const std::size_t size = clips_[static_cast<std::size_t>(message->index)].data.size();
    if (size + static_cast<std::size_t>(message->length) > kVoiceClipCapacity) {
        drop("the clip is full", message->index, message->length);
        return false;
    }
    setVoiceDataListData(message->data, message->index, message->length);
    return message->final == 1;
}

void VoiceGuide::awaitMessage(int connection) {
    setsockopt(connection, SOL_SOCKET, SO_RCVTIMEO, &kReceiveTimeout, sizeof(kReceiveTimeout));
    const auto start = std::chrono::steady_clock::now();
    pollfd message = {connection, POLLIN, 0};
    while (poll(&message, 1, kWaitSliceMilliseconds) <= 0) {
        const auto waited = std::chrono::steady_clock::now() - start;
        if (stopping_ || waited >= patience_) {
            patience_ = std::max<std::chrono::nanoseconds>(patience_ - waited, kLeastPatience);
            return;
        }
    }
}

void VoiceGuide::drop(const char* reason, int index, int length) {
    if (++dropped_ > kLoggedDrops) {
        return;
    }
    CA_LOG_ERROR("[TUI NWD] Voice message is dropped : %s, index %d of %d, length %d", reason, index, voiceCount_,
                 length);
    if (dropped_ == kLoggedDrops) {
        CA_LOG_ERROR("[TUI NWD] Further dropped voice messages are not logged");
    }
}

void VoiceGuide::setVoiceDataListData(const unsigned char* data, int index, int length) {
    std::vector<std::uint8_t>& clip = clips_[static_cast<std::size_t>(index)].data;
    clip.insert(clip.end(), data, data + length);
}

// A receiver left over from a time-out sits in accept(), and releasing its future waits for it: connections of our own
// bring it back until it has seen that it must stop. The receiver may not have bound its socket yet, hence the loop.
// They never wait: a backlog that others have filled keeps the receiver out of accept() anyway, and the name may belong
// to another process that accepts nothing.
void VoiceGuide::wakeReceiver() {
    stopping_ = true;
    while (result_.valid() && result_.wait_for(kWakeInterval) == std::future_status::timeout) {
        const int wake = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        const sockaddr_un address = voiceSocketAddress();
        connect(wake, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        close(wake);
    }
}

}  // namespace vaultpad::audio
