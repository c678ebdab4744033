#include "channel/channel.h"

#include <fcntl.h>
#include <sys/socket.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace vaultpad::secureworld {

namespace {

void takeDescriptors(msghdr* header, std::vector<FileDescriptor>* descriptors) {
    for (cmsghdr* control = CMSG_FIRSTHDR(header); control; control = CMSG_NXTHDR(header, control)) {
        if (control->cmsg_level != SOL_SOCKET || control->cmsg_type != SCM_RIGHTS) {
            continue;
        }
        const std::size_t count = (control->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(control) + i * sizeof(int), sizeof(int));
            descriptors->emplace_back(descriptor);
        }
    }
}

std::string faultOf(const VaultPadChannelRequest& request, std::size_t size, int flags, std::size_t descriptors) {
    if ((flags & MSG_CTRUNC) != 0) {
        return "a request with more descriptors than an event has blocks, or than this process may open";
    }
    if ((flags & MSG_TRUNC) != 0 || size != sizeof(request)) {
        return "a request of the wrong size";
    }
    if (request.magic != VAULTPAD_CHANNEL_MAGIC || request.version != VAULTPAD_CHANNEL_VERSION) {
        return "a request of another kind or version";
    }
    if (request.block_count > VAULTPAD_CHANNEL_BLOCKS_MAX || request.block_count != descriptors) {
        return "a request of " + std::to_string(request.block_count) + " blocks with " + std::to_string(descriptors) +
               " descriptors";
    }
    return {};
}

}  // namespace

Channel::Channel(FileDescriptor socket) : socket_(std::move(socket)) {
    int type = 0;
    socklen_t size = sizeof(type);
    if (getsockopt(socket_.get(), SOL_SOCKET, SO_TYPE, &type, &size) != 0 || type != SOCK_SEQPACKET) {
        throw std::runtime_error("--channel " + std::to_string(socket_.get()) +
                                 " is no SOCK_SEQPACKET socket: this program is started by the platform's client");
    }
    fcntl(socket_.get(), F_SETFD, FD_CLOEXEC);
}

pid_t Channel::clientProcess() const {
    ucred credentials = {};
    socklen_t size = sizeof(credentials);
    return getsockopt(socket_.get(), SOL_SOCKET, SO_PEERCRED, &credentials, &size) == 0 ? credentials.pid : 0;
}

bool Channel::receive(Message* message) {
    *message = Message();
    iovec data = {&message->request, sizeof(message->request)};
    alignas(cmsghdr) char control[CMSG_SPACE(VAULTPAD_CHANNEL_BLOCKS_MAX * sizeof(int))] = {};
    msghdr header = {};
    header.msg_iov = &data;
    header.msg_iovlen = 1;
    header.msg_control = control;
    header.msg_controllen = sizeof(control);
    ssize_t size = 0;
    do {
        size = recvmsg(socket_.get(), &header, MSG_CMSG_CLOEXEC);
    } while (size < 0 && errno == EINTR);
    if (size <= 0) {
        return false;
    }
    takeDescriptors(&header, &message->descriptors);
    message->fault =
        faultOf(message->request, static_cast<std::size_t>(size), header.msg_flags, message->descriptors.size());
    return true;
}

bool Channel::reply(std::uint32_t kind, bool accepted) {
    const VaultPadChannelReply reply = {VAULTPAD_CHANNEL_MAGIC, kind, accepted ? 0 : -1};
    // A client that sends requests without taking the replies would block this process for good.
    return send(socket_.get(), &reply, sizeof(reply), MSG_NOSIGNAL | MSG_DONTWAIT) ==
           static_cast<ssize_t>(sizeof(reply));
}

}  // namespace vaultpad::secureworld
