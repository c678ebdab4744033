// The trusted application's end of the socket pair to the client.
#ifndef VAULTPAD_SECURE_WORLD_CHANNEL_CHANNEL_H
#define VAULTPAD_SECURE_WORLD_CHANNEL_CHANNEL_H

#include <cstdint>
#include <string>
#include <vector>

#include "channel/file-descriptor.h"
#include "platform/host/secure-channel-wire.h"

namespace vaultpad::secureworld {

struct Message {
    VaultPadChannelRequest request = {};
    std::vector<FileDescriptor> descriptors;
    std::string fault;  // why it is no request at all; empty for a well-formed one
};

class Channel {
public:
    // Throws std::runtime_error when the descriptor is no SOCK_SEQPACKET socket.
    explicit Channel(FileDescriptor socket);

    int descriptor() const { return socket_.get(); }

    // The process at the other end when the socket pair was made, 0 when it is not known here.
    pid_t clientProcess() const;

    // Receives the next message; false when the client has ended the session.
    bool receive(Message* message);

    // Answers a request of the given kind; false when the client takes no reply any more.
    bool reply(std::uint32_t kind, bool accepted);

private:
    FileDescriptor socket_;
};

}  // namespace vaultpad::secureworld

#endif
