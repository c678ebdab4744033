/* One context of the trusted-execution client: its session and its blocks. */
#ifndef VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_CONTEXT_H
#define VAULTPAD_PLATFORM_HOST_TRUSTED_CORE_CONTEXT_H

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "secure-channel-wire.h"
#include "television.h"
#include "trusted-core-block.h"
#include "trusted-core-channel.h"
#include "trusted-core-process.h"

namespace vaultpad::host {

using TaUuid = std::array<uint8_t, sizeof VaultPadChannelRequest::uuid>;

/* Functions return true on success; a failure of the session is in the log. One thread at a time. */
class TrustedContext {
public:
    TrustedContext() = default;
    ~TrustedContext() { closeSession(); }
    TrustedContext(const TrustedContext&) = delete;
    TrustedContext& operator=(const TrustedContext&) = delete;

    void setUuid(const TaUuid& uuid);

    /* Starts the TA. Fails when no UUID is set or a session is open. */
    bool openSession();

    /* Ends the TA. Fails, with nothing left behind, when the session had broken before. */
    bool closeSession();

    /*
     * Carries an event with the newest blocks that no event carried yet. A TA that is gone, answers too late or
     * answers nonsense breaks the session: every later event fails at once.
     */
    bool invoke(uint32_t event);

    /* Makes a block and returns its handle; null on failure. */
    void* addBlock(uint32_t size);

    /* Returns null for a handle that is not one of this context's blocks. */
    SharedBlock* findBlock(const void* handle);

    void removeBlock(const void* handle);

private:
    enum class Session { kNone, kOpen, kBroken };

    struct Block {
        void* handle;
        std::unique_ptr<SharedBlock> memory;
        bool carried; /* by an event */
    };

    bool startTa(const Television& television);
    std::vector<Block*> newBlocks();
    std::unique_ptr<SharedBlock> takeSpare(uint32_t size);
    PollClock::time_point deadline() const;
    void breakSession(Exchange reason, const std::string& during);

    bool uuidSet_ = false;
    TaUuid uuid_ = {};
    Session session_ = Session::kNone;
    std::chrono::seconds timeout_{0};
    TaProcess process_; /* destroyed after the channel is closed */
    TaChannel channel_;
    std::vector<Block> blocks_; /* oldest first */
    /* Small blocks that were released: a key event needs two, and making a memory file takes longer than clearing it.
     */
    std::vector<std::unique_ptr<SharedBlock>> spare_;
};

}  // namespace vaultpad::host

#endif
