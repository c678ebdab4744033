// A process that harms the voice guide as much as it can without being another user: hostile-client KIND
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "voice-message.h"

namespace {

using vaultpad::audio::VoiceMessage;

int tryToConnect() {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const sockaddr_un address = vaultpad::audio::voiceSocketAddress();
    if (connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        close(socket);
        usleep(200);
        return -1;
    }
    return socket;
}

void sendBytes(const void* bytes, std::size_t size) {
    const int socket = tryToConnect();
    if (socket >= 0) {
        send(socket, bytes, size, MSG_NOSIGNAL);
        close(socket);
    }
}

// Of the values of a word, those at the edges.
std::int32_t edge(std::mt19937& random) {
    constexpr std::int32_t kEdges[] = {0, 1, -1, 2, 14, 15, 16, 23999, 24000, 24001, INT32_MAX, INT32_MIN, 1 << 20};
    return kEdges[random() % std::size(kEdges)];
}

void sendAnything(std::mt19937& random) {
    std::vector<std::uint8_t> bytes(2 * sizeof(VoiceMessage));
    const std::int32_t words[] = {edge(random), edge(random), edge(random)};
    std::memcpy(bytes.data(), words, sizeof(words));
    const std::size_t sizes[] = {0, 1, 11, 12, 13, 4000, sizeof(VoiceMessage), bytes.size()};
    sendBytes(bytes.data(), sizes[random() % std::size(sizes)]);
}

// Fills clips as far as they go, and completes none.
void sendEndlessly(std::mt19937& random) {
    const auto message = std::make_unique<VoiceMessage>();
    message->index = static_cast<std::int32_t>(random() % 15);
    message->length = vaultpad::audio::kVoiceMessageCapacity;
    sendBytes(message.get(), sizeof(*message));
}

// Holds up to a backlog of connections open without a word.
void staySilent(std::mt19937&) {
    static std::vector<int> silent;
    const int socket = tryToConnect();
    if (socket < 0) {
        return;
    }
    silent.push_back(socket);
    if (silent.size() > 500) {
        close(silent.front());
        silent.erase(silent.begin());
    }
}

}  // namespace

int main(int argc, char** argv) {
    const std::map<std::string, void (*)(std::mt19937&)> kinds = {
        {"anything", sendAnything}, {"endless", sendEndlessly}, {"silent", staySilent}};
    const auto kind = argc == 2 ? kinds.find(argv[1]) : kinds.end();
    if (kind == kinds.end()) {
        std::fprintf(stderr, "usage: hostile-client anything|endless|silent\n");
        return 2;
    }
    const pid_t starter = getppid();
    for (std::mt19937 random(2580); getppid() == starter;) {
        kind->second(random);
    }
    return 0;
}
