#include "trusted-core-channel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vaultpad::host {

namespace {

constexpr int kFirstFreeDescriptor = STDERR_FILENO + 1;

/* Moves a descriptor out of the standard streams' numbers, which a client may have closed. */
UniqueFd aboveStandardStreams(UniqueFd fd) {
    return fd.get() >= kFirstFreeDescriptor ? std::move(fd)
                                            : UniqueFd(fcntl(fd.get(), F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
}

/* A socket that cannot be used any more means that the TA is gone. */
Exchange fromPoll(PollResult result) {
    return result == PollResult::kTimedOut ? Exchange::kTimedOut : Exchange::kEnded;
}

}  // namespace

int TaChannel::open(UniqueFd& taEnd) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0) {
        return errno;
    }
    UniqueFd ours(ends[0]);
    UniqueFd theirs(ends[1]);
    ours = aboveStandardStreams(std::move(ours));
    theirs = aboveStandardStreams(std::move(theirs));
    if (!ours.valid() || !theirs.valid()) {
        return errno;
    }
    socket_ = std::move(ours);
    taEnd = std::move(theirs);
    return 0;
}

Exchange TaChannel::exchange(const VaultPadChannelRequest& request, const BlockDescriptors& descriptors,
                             PollClock::time_point deadline) {
    const Exchange sent = send(request, descriptors, deadline);
    return sent == Exchange::kAccepted ? receive(request.kind, deadline) : sent;
}

Exchange TaChannel::send(const VaultPadChannelRequest& request, const BlockDescriptors& descriptors,
                         PollClock::time_point deadline) {
    iovec part = {const_cast<VaultPadChannelRequest*>(&request), sizeof request};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(BlockDescriptors))] = {};
    msghdr message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    if (request.block_count > 0) {
        const std::size_t size = request.block_count * sizeof(int);
        message.msg_control = control;
        message.msg_controllen = CMSG_SPACE(size);
        cmsghdr* const header = CMSG_FIRSTHDR(&message);
        header->cmsg_level = SOL_SOCKET;
        header->cmsg_type = SCM_RIGHTS;
        header->cmsg_len = CMSG_LEN(size);
        std::memcpy(CMSG_DATA(header), descriptors.data(), size);
    }
    for (;;) {
        if (sendmsg(socket_.get(), &message, MSG_NOSIGNAL | MSG_DONTWAIT) >= 0) {
            return Exchange::kAccepted;
        }
        if (errno == EAGAIN) {
            const PollResult ready = pollUntil(socket_.get(), POLLOUT, deadline);
            if (ready != PollResult::kReady) {
                return fromPoll(ready);
            }
        } else if (errno != EINTR) {
            return Exchange::kEnded;
        }
    }
}

Exchange TaChannel::receive(uint32_t kind, PollClock::time_point deadline) {
    VaultPadChannelReply reply = {};
    iovec part = {&reply, sizeof reply};
    for (;;) {
        const PollResult ready = pollUntil(socket_.get(), POLLIN, deadline);
        if (ready != PollResult::kReady) {
            return fromPoll(ready);
        }
        /* No room for ancillary data: the kernel drops descriptors that nobody asked the TA for. */
        msghdr message = {};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        const ssize_t size = recvmsg(socket_.get(), &message, MSG_DONTWAIT);
        if (size < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (size <= 0) {
            return Exchange::kEnded;
        }
        if (size != sizeof reply || (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0 ||
            reply.magic != VAULTPAD_CHANNEL_MAGIC || reply.kind != kind) {
            return Exchange::kGarbled;
        }
        return reply.result == 0 ? Exchange::kAccepted : Exchange::kRefused;
    }
}

}  // namespace vaultpad::host
