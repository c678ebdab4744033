/* A trusted application that does what it is told, to test how sessions cope with it. */
#include <fcntl.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "host/secure-channel-wire.h"
#include "scripted-orders.h"

namespace {

constexpr int kChannel = 3;
constexpr int kExitStatus = 7;
constexpr useconds_t kLateMicroseconds = 300000;

/* One request with what came along. */
struct Message {
    VaultPadChannelRequest request = {};
    int descriptors[VAULTPAD_CHANNEL_BLOCKS_MAX] = {-1, -1, -1, -1};
    std::size_t count = 0;
};

bool receive(Message& message) {
    iovec part = {&message.request, sizeof message.request};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof message.descriptors)] = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    if (recvmsg(kChannel, &header, MSG_CMSG_CLOEXEC) != sizeof message.request) {
        return false;
    }
    if (const cmsghdr* const found = CMSG_FIRSTHDR(&header)) {
        message.count = (found->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        std::memcpy(message.descriptors, CMSG_DATA(found), message.count * sizeof(int));
    }
    return message.count == message.request.block_count;
}

void reply(uint32_t kind, int32_t result, std::size_t size = sizeof(VaultPadChannelReply),
           uint32_t magic = VAULTPAD_CHANNEL_MAGIC) {
    const VaultPadChannelReply words = {magic, kind, result};
    char bytes[2 * sizeof words] = {};
    std::memcpy(bytes, &words, sizeof words);
    send(kChannel, bytes, size, MSG_NOSIGNAL);
}

void replyWithDescriptor() {
    VaultPadChannelReply words = {VAULTPAD_CHANNEL_MAGIC, VAULTPAD_CHANNEL_INVOKE, 0};
    iovec part = {&words, sizeof words};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof control;
    cmsghdr* const rights = CMSG_FIRSTHDR(&header);
    rights->cmsg_level = SOL_SOCKET;
    rights->cmsg_type = SCM_RIGHTS;
    rights->cmsg_len = CMSG_LEN(sizeof(int));
    const int sent = STDERR_FILENO;
    std::memcpy(CMSG_DATA(rights), &sent, sizeof sent);
    sendmsg(kChannel, &header, MSG_NOSIGNAL);
}

/* Writes into the last block. */
void tell(const Message& message, const void* data, std::size_t size) {
    const int fd = message.descriptors[message.count - 1];
    if (pwrite(fd, data, size, 0) != static_cast<ssize_t>(size)) {
        _exit(EXIT_FAILURE);
    }
}

void tellBlocks(const Message& message) {
    std::vector<uint32_t> words = {message.request.block_count};
    for (std::size_t i = 0; i < message.count; ++i) {
        struct stat status = {};
        uint32_t first = 0;
        fstat(message.descriptors[i], &status);
        if (pread(message.descriptors[i], &first, sizeof first, 0) != sizeof first) {
            first = 0;
        }
        words.insert(words.end(), {message.request.blocks[i].size, message.request.blocks[i].written,
                                   static_cast<uint32_t>(status.st_size), first});
    }
    tell(message, words.data(), words.size() * sizeof words[0]);
}

void tellSeals(const Message& message) {
    const uint32_t seals = static_cast<uint32_t>(fcntl(message.descriptors[message.count - 1], F_GET_SEALS));
    tell(message, &seals, sizeof seals);
}

void tellProcess(const Message& message, uint32_t openDescriptors) {
    sigset_t blocked;
    sigprocmask(SIG_BLOCK, nullptr, &blocked);
    uint32_t lowest = 0;
    for (int signal = NSIG - 1; signal > 0; --signal) {
        lowest = sigismember(&blocked, signal) == 1 ? static_cast<uint32_t>(signal) : lowest;
    }
    struct sigaction action = {};
    sigaction(SIGPIPE, nullptr, &action);
    const uint32_t words[] = {static_cast<uint32_t>(getpid()), lowest, action.sa_handler == SIG_IGN ? 1u : 0u,
                              openDescriptors};
    tell(message, words, sizeof words);
}

void tellArguments(const Message& message, int count, char** arguments) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text.append(arguments[i], std::strlen(arguments[i]) + 1);
    }
    tell(message, text.c_str(), text.size() + 1);
}

/* The orders that end or spoil the session; false for any other. */
bool misbehave(uint32_t order) {
    constexpr uint32_t kKind = VAULTPAD_CHANNEL_INVOKE;
    switch (order) {
        case SCRIPTED_DIE:
            return raise(SIGKILL) == 0;
        case SCRIPTED_EXIT:
            _exit(kExitStatus);
        case SCRIPTED_HANG:
            for (;;) {
                pause();
            }
        case SCRIPTED_ANSWER_SHORT:
            reply(kKind, 0, sizeof(VaultPadChannelReply) - 1);
            return true;
        case SCRIPTED_ANSWER_LONG:
            reply(kKind, 0, sizeof(VaultPadChannelReply) + 1);
            return true;
        case SCRIPTED_ANSWER_WRONG_MAGIC:
            reply(kKind, 0, sizeof(VaultPadChannelReply), 1);
            return true;
        case SCRIPTED_ANSWER_WRONG_KIND:
            reply(VAULTPAD_CHANNEL_OPEN, 0);
            return true;
        case SCRIPTED_ANSWER_WITH_DESCRIPTOR:
            replyWithDescriptor();
            return true;
        default:
            return false;
    }
}

uint32_t openDescriptorBits() {
    constexpr int kLast = 31;
    uint32_t bits = 0;
    for (int fd = 0; fd <= kLast; ++fd) {
        bits |= fcntl(fd, F_GETFD) >= 0 ? 1u << fd : 0u;
    }
    return bits;
}

}  // namespace

int main(int argc, char** argv) {
    const uint32_t openAtStart = openDescriptorBits();
    const char* const variable = getenv(VAULTPAD_SCRIPTED_TA_START);
    const std::string start = variable == nullptr ? "" : variable;
    if (start == VAULTPAD_SCRIPTED_TA_EXITS) {
        _exit(kExitStatus);
    }
    uint8_t uuid[sizeof VaultPadChannelRequest::uuid] = {};
    for (Message message; receive(message); message = {}) {
        const uint32_t order = message.request.kind == VAULTPAD_CHANNEL_INVOKE ? message.request.event : 0;
        if (order == 0) {
            std::memcpy(uuid, message.request.uuid, sizeof uuid);
        } else if (order == SCRIPTED_TELL_BLOCKS) {
            tellBlocks(message);
        } else if (order == SCRIPTED_TELL_SEALS) {
            tellSeals(message);
        } else if (order == SCRIPTED_TELL_UUID) {
            tell(message, uuid, sizeof uuid);
        } else if (order == SCRIPTED_TELL_PROCESS) {
            tellProcess(message, openAtStart);
        } else if (order == SCRIPTED_TELL_ARGUMENTS) {
            tellArguments(message, argc, argv);
        } else if (order == SCRIPTED_ANSWER_LATE) {
            usleep(kLateMicroseconds);
        }
        for (std::size_t i = 0; i < message.count; ++i) {
            close(message.descriptors[i]);
        }
        const bool refused = order == SCRIPTED_REFUSE || start == VAULTPAD_SCRIPTED_TA_REFUSES;
        if (start != VAULTPAD_SCRIPTED_TA_SILENT && !misbehave(order)) {
            reply(message.request.kind, refused ? -1 : 0);
        }
    }
    while (start == VAULTPAD_SCRIPTED_TA_STAYS) {
        pause();
    }
    return EXIT_SUCCESS;
}
