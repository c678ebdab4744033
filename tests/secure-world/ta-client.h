// A client of vaultpad-ta that is as small and as badly behaved as a test wants it.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_TA_CLIENT_H
#define VAULTPAD_TESTS_SECURE_WORLD_TA_CLIENT_H

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "channel/file-descriptor.h"
#include "platform/host/secure-channel-wire.h"

namespace vaultpad::secureworld {

using Bytes = std::vector<std::uint8_t>;

// Appends values the way the trusted-execution client does.
class Writer {
public:
    Writer& word(std::uint32_t value);
    Writer& string(const std::string& text);
    Writer& blob(const Bytes& data);
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

// A block of shared memory. The defaults make a proper one.
struct BlockSpec {
    std::uint32_t size = 0;  // of the file
    Bytes content;
    bool sealed = true;
    bool readOnly = false;
    std::optional<std::uint32_t> announcedSize = {};
    std::optional<std::uint32_t> announcedWritten = {};
};

// For TaClient::Setup::inChild, when the program is expected to complain.
void dropMessages();

struct KeyAnswer {
    int result = 0;
    std::uint32_t pressed = 0;
    std::uint32_t closed = 0;
    std::uint32_t characters = 0;
    Bytes encryptedKey;
    Bytes encryptedData;
};

class TaClient {
public:
    struct Setup {
        std::vector<std::string> options = {};
        std::vector<std::string> environment = {};  // NAME=value, beside the test's own
        std::function<void()> inChild = [] {};      // runs in the child before the program starts
        bool ownLog = true;                         // the log goes to a file of this client's
    };

    TaClient() : TaClient(Setup()) {}
    explicit TaClient(const Setup& setup);
    ~TaClient();
    TaClient(const TaClient&) = delete;
    TaClient& operator=(const TaClient&) = delete;

    // What the TA answers: 0, -1, or kEnded when it does not.
    static constexpr int kEnded = -2;

    int open();
    int invoke(std::uint32_t event, const Bytes& content = {});
    int invokeBlocks(std::uint32_t event, const std::vector<BlockSpec>& blocks);
    KeyAnswer key(std::uint32_t code);
    KeyAnswer keyWith(const BlockSpec& request, const BlockSpec& answer, const std::vector<BlockSpec>& older = {});

    // Sends any bytes with any number of descriptors and takes the reply.
    int exchange(const void* data, std::size_t size, const std::vector<int>& descriptors);

    pid_t process() const { return process_; }
    std::string log() const;
    void closeChannel() { channel_ = FileDescriptor(); }

    // The exit status once the process has ended, -1 when a signal ended it or it lives on after the time.
    int waitForEnd(int seconds = 10);

    const std::string& folder() const { return folder_; }

    static VaultPadChannelRequest openRequest();
    static std::uint32_t blockSize(std::uint32_t event);
    static FileDescriptor makeBlock(const BlockSpec& spec);

private:
    [[noreturn]] void runChild(const Setup& setup, int channel) const;

    std::string folder_;
    FileDescriptor channel_;
    pid_t process_ = -1;
    int status_ = 0;
    bool ended_ = false;
};

}  // namespace vaultpad::secureworld

#endif
