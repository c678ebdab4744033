// Serves one session from its opening to its end.
#ifndef VAULTPAD_SECURE_WORLD_SERVER_H
#define VAULTPAD_SECURE_WORLD_SERVER_H

#include <cstdint>
#include <memory>

#include "channel/channel.h"
#include "channel/file-descriptor.h"
#include "display/screen.h"
#include "log.h"
#include "options.h"
#include "session/session.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {

class Server {
public:
    // channel and log must outlive the server. endRequested becomes readable when the process is to end.
    Server(Channel* channel, Log* log, const Options& options, FileDescriptor endRequested);

    // Returns the process's exit status once the session has ended, whoever ended it: 0, or 1 when it never opened.
    int run();

private:
    bool waitForRequest(const FileDescriptor& client);
    bool serveNext();
    bool serve(const Message& message);
    bool open(const VaultPadChannelRequest& request);
    void invoke(const Message& message);

    Channel* channel_;
    Log* log_;
    Options options_;
    FileDescriptor endRequested_;
    std::unique_ptr<Screen> screen_;
    std::unique_ptr<VoiceOutput> voice_;
    std::unique_ptr<Session> session_;
    Message answered_;
    bool failed_ = false;
};

}  // namespace vaultpad::secureworld

#endif
