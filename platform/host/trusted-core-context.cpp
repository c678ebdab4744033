#include "trusted-core-context.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "handle-table.h"
#include "host-log.h"

namespace vaultpad::host {

namespace {

constexpr uint32_t kSpareSize = 4096;
constexpr std::size_t kSpareCount = 4;

VaultPadChannelRequest makeRequest(uint32_t kind) {
    VaultPadChannelRequest request = {};
    request.magic = VAULTPAD_CHANNEL_MAGIC;
    request.version = VAULTPAD_CHANNEL_VERSION;
    request.kind = kind;
    return request;
}

const char* describe(Exchange reason) {
    switch (reason) {
        case Exchange::kTimedOut:
            return "did not answer in time";
        case Exchange::kGarbled:
            return "answered nonsense";
        default:
            return "ended";
    }
}

}  // namespace

void TrustedContext::setUuid(const TaUuid& uuid) {
    uuid_ = uuid;
    uuidSet_ = true;
}

bool TrustedContext::openSession() {
    if (!uuidSet_ || session_ != Session::kNone) {
        VAULTPAD_HOST_LOG_ERROR("a session cannot be opened: %s", uuidSet_ ? "it is open" : "no UUID was set");
        return false;
    }
    const std::shared_ptr<const Television> settings = television();
    if (!settings) {
        VAULTPAD_HOST_LOG_ERROR("a session cannot be opened: the television's key file cannot be used");
        return false;
    }
    if (!startTa(*settings)) {
        return false;
    }
    VaultPadChannelRequest request = makeRequest(VAULTPAD_CHANNEL_OPEN);
    std::memcpy(request.uuid, uuid_.data(), uuid_.size());
    const Exchange result = channel_.exchange(request, {}, deadline());
    if (result == Exchange::kAccepted) {
        session_ = Session::kOpen;
        return true;
    }
    channel_.close();
    const std::string end = process_.end();
    VAULTPAD_HOST_LOG_ERROR("the trusted application %s %s when the session was opened (%s)",
                            settings->taExecutable.c_str(), result == Exchange::kRefused ? "refused" : describe(result),
                            end.c_str());
    return false;
}

bool TrustedContext::startTa(const Television& television) {
    timeout_ = std::chrono::seconds(television.taTimeoutSeconds);
    UniqueFd taEnd;
    const int noChannel = channel_.open(taEnd);
    const int error = noChannel != 0 ? noChannel : process_.start(television, taEnd.get());
    if (error != 0) {
        channel_.close();
        VAULTPAD_HOST_LOG_ERROR("the trusted application %s cannot be started: %s; see [secure-world] executable",
                                television.taExecutable.c_str(), std::strerror(error));
        return false;
    }
    return true;
}

bool TrustedContext::closeSession() {
    channel_.close();
    process_.end();
    return std::exchange(session_, Session::kNone) == Session::kOpen;
}

bool TrustedContext::invoke(uint32_t event) {
    if (session_ != Session::kOpen) {
        return false;
    }
    const std::vector<Block*> carried = newBlocks();
    VaultPadChannelRequest request = makeRequest(VAULTPAD_CHANNEL_INVOKE);
    request.event = event;
    BlockDescriptors descriptors = {};
    for (Block* const block : carried) {
        descriptors[request.block_count] = block->memory->fd();
        request.blocks[request.block_count] = {block->memory->size(), block->memory->written()};
        ++request.block_count;
        block->carried = true;
    }
    const Exchange result = channel_.exchange(request, descriptors, deadline());
    if (result == Exchange::kRefused) {
        VAULTPAD_HOST_LOG_ERROR("the trusted application refused event %u", event);
    } else if (result != Exchange::kAccepted) {
        breakSession(result, "event " + std::to_string(event));
    }
    return result == Exchange::kAccepted;
}

void TrustedContext::breakSession(Exchange reason, const std::string& during) {
    session_ = Session::kBroken;
    channel_.close();
    VAULTPAD_HOST_LOG_ERROR("the trusted application %s during %s; the session is of no more use", describe(reason),
                            during.c_str());
}

void* TrustedContext::addBlock(uint32_t size) {
    std::unique_ptr<SharedBlock> memory = takeSpare(size);
    if (!memory) {
        memory = SharedBlock::create(size);
    }
    if (!memory) {
        VAULTPAD_HOST_LOG_ERROR("a block of %u bytes cannot be made: %s", size, std::strerror(errno));
        return nullptr;
    }
    blocks_.push_back({makeHandle(), std::move(memory), false});
    return blocks_.back().handle;
}

SharedBlock* TrustedContext::findBlock(const void* handle) {
    const auto found =
        std::find_if(blocks_.begin(), blocks_.end(), [handle](const Block& block) { return block.handle == handle; });
    return found == blocks_.end() ? nullptr : found->memory.get();
}

std::unique_ptr<SharedBlock> TrustedContext::takeSpare(uint32_t size) {
    const auto found =
        std::find_if(spare_.begin(), spare_.end(), [size](const auto& memory) { return memory->size() == size; });
    if (found == spare_.end()) {
        return nullptr;
    }
    std::unique_ptr<SharedBlock> memory = std::move(*found);
    spare_.erase(found);
    return memory;
}

void TrustedContext::removeBlock(const void* handle) {
    const auto found =
        std::find_if(blocks_.begin(), blocks_.end(), [handle](const Block& block) { return block.handle == handle; });
    if (found == blocks_.end()) {
        return;
    }
    if (found->memory->size() <= kSpareSize && spare_.size() < kSpareCount) {
        found->memory->clear();
        spare_.push_back(std::move(found->memory));
    }
    blocks_.erase(found);
}

std::vector<TrustedContext::Block*> TrustedContext::newBlocks() {
    std::vector<Block*> newest;
    for (auto block = blocks_.rbegin(); block != blocks_.rend() && newest.size() < VAULTPAD_CHANNEL_BLOCKS_MAX;
         ++block) {
        if (!block->carried) {
            newest.push_back(&*block);
        }
    }
    std::reverse(newest.begin(), newest.end());
    return newest;
}

PollClock::time_point TrustedContext::deadline() const {
    return PollClock::now() + timeout_;
}

}  // namespace vaultpad::host
