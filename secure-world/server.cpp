#include "server.h"

#include <poll.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <exception>
#include <string>
#include <utility>

#include "channel/block.h"
#include "display/display-loader.h"
#include "hygiene.h"
#include "session/public-key.h"
#include "session/refusal.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr std::size_t kUuidSize = 16;

// A block's memory goes back to the system with whoever lets go of it last, which takes a millisecond for a batch of
// images. That is to be this process, while the client does something else.
constexpr int kClientGoesOnMilliseconds = 1;

std::array<std::uint8_t, kUuidSize> ownUuid() {
    constexpr std::uint32_t low = VAULTPAD_TA_UUID_TIME_LOW;
    constexpr std::uint32_t mid = VAULTPAD_TA_UUID_TIME_MID;
    constexpr std::uint32_t high = VAULTPAD_TA_UUID_TIME_HI_AND_VERSION;
    constexpr std::uint8_t node[] = VAULTPAD_TA_UUID_CLOCK_SEQ_AND_NODE;
    std::array<std::uint8_t, kUuidSize> result = {low >> 24, low >> 16 & 0xff, low >> 8 & 0xff, low & 0xff,
                                                  mid >> 8,  mid & 0xff,       high >> 8,       high & 0xff};
    std::memcpy(result.data() + kUuidSize - sizeof(node), node, sizeof(node));
    return result;
}

// The size of an event's request block, 0 for no such event.
std::uint32_t blockSizeOf(std::uint32_t event) {
    switch (event) {
        case VAULTPAD_TA_EVENT_IMAGE_DATA:
            return VAULTPAD_TA_BLOCK_IMAGE_DATA;
        case VAULTPAD_TA_EVENT_SHOW:
            return VAULTPAD_TA_BLOCK_SHOW;
        case VAULTPAD_TA_EVENT_KEY:
            return VAULTPAD_TA_BLOCK_KEY_REQUEST;
        case VAULTPAD_TA_EVENT_PUBLIC_KEY:
            return VAULTPAD_TA_BLOCK_PUBLIC_KEY;
        case VAULTPAD_TA_EVENT_VOICE_DATA:
            return VAULTPAD_TA_BLOCK_VOICE_DATA;
        case VAULTPAD_TA_EVENT_IME_TYPE:
            return VAULTPAD_TA_BLOCK_IME_TYPE;
        case VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR:
            return VAULTPAD_TA_BLOCK_REFRESH_LOADING_BAR;
        case VAULTPAD_TA_EVENT_IMAGE_DONE:
            return VAULTPAD_TA_BLOCK_IMAGE_DONE;
        case VAULTPAD_TA_EVENT_RENDER_CONTEXT:
            return VAULTPAD_TA_BLOCK_RENDER_CONTEXT;
        default:
            return 0;
    }
}

void checkSize(const VaultPadChannelBlock& block, std::uint32_t size) {
    if (block.size != size) {
        throw Refusal("a block has " + std::to_string(block.size) + " bytes instead of " + std::to_string(size));
    }
}

}  // namespace

Server::Server(Channel* channel, Log* log, const Options& options, FileDescriptor endRequested)
    : channel_(channel), log_(log), options_(options), endRequested_(std::move(endRequested)) {}

int Server::run() {
    bool gone = false;
    const FileDescriptor client = watchProcess(channel_->clientProcess(), &gone);
    while (!gone && waitForRequest(client) && serveNext()) {
    }
    return failed_ ? 1 : 0;
}

bool Server::serveNext() {
    Message message;
    const bool goesOn = channel_->receive(&message) && serve(message);
    answered_ = std::move(message);
    return goesOn;
}

bool Server::waitForRequest(const FileDescriptor& client) {
    // A descriptor of -1 is passed over by poll().
    pollfd watched[] = {
        {endRequested_.get(), POLLIN, 0}, {client.get(), POLLIN, 0}, {channel_->descriptor(), POLLIN, 0}};
    for (;;) {
        const bool holdsBlocks = !answered_.descriptors.empty();
        const int idle = screen_ ? screen_->idleInterval() : -1;
        const int ready = poll(watched, std::size(watched), holdsBlocks ? kClientGoesOnMilliseconds : idle);
        if (ready < 0 && errno != EINTR) {
            log_->line(std::string("cannot wait for the client: ") + std::strerror(errno));
            return false;
        }
        if (ready > 0) {
            return watched[0].revents == 0 && watched[1].revents == 0;
        }
        if (ready == 0 && holdsBlocks) {
            answered_ = Message();
        } else if (ready == 0) {
            screen_->idle();
        }
    }
}

bool Server::serve(const Message& message) {
    const std::uint32_t kind = message.request.kind;
    bool accepted = false;
    try {
        if (!message.fault.empty()) {
            throw Refusal(message.fault);
        }
        if (kind == VAULTPAD_CHANNEL_OPEN) {
            accepted = open(message.request);
        } else if (kind == VAULTPAD_CHANNEL_INVOKE) {
            invoke(message);
            accepted = true;
        } else {
            throw Refusal("a request of the unknown kind " + std::to_string(kind));
        }
    } catch (const std::exception& error) {
        const bool event = message.fault.empty() && kind == VAULTPAD_CHANNEL_INVOKE;
        log_->line((event ? "event " + std::to_string(message.request.event) + " refused: " : "refused: ") +
                   error.what());
    }
    const bool replied = channel_->reply(kind, accepted);
    if (kind == VAULTPAD_CHANNEL_OPEN && accepted) {
        // Now, as the client is going to draw the pad and needs nothing from here meanwhile.
        loadCryptography();
    }
    return replied && !failed_;
}

bool Server::open(const VaultPadChannelRequest& request) {
    if (session_) {
        throw Refusal("the session is open already");
    }
    try {
        if (std::memcmp(request.uuid, ownUuid().data(), kUuidSize) != 0) {
            throw Refusal("the client asks for another trusted application");
        }
        const DisplaySettings settings = {options_.framesFolder};
        screen_ = std::make_unique<Screen>(loadDisplay(options_.display, settings), options_.view);
        voice_ = makeVoiceOutput(options_.voice, log_);
        session_ = std::make_unique<Session>(screen_.get(), voice_.get(), log_, options_.storeFolder);
    } catch (...) {
        failed_ = true;
        throw;
    }
    return true;
}

void Server::invoke(const Message& message) {
    if (!session_) {
        throw Refusal("the session is not open");
    }
    const VaultPadChannelRequest& request = message.request;
    const bool answers = request.event == VAULTPAD_TA_EVENT_KEY;
    const std::uint32_t needed = answers ? 2 : 1;
    const std::uint32_t requestSize = blockSizeOf(request.event);
    if (requestSize == 0) {
        throw Refusal("there is no such event");
    }
    if (request.block_count < needed) {
        throw Refusal("the event has " + std::to_string(request.block_count) + " blocks instead of " +
                      std::to_string(needed));
    }
    for (std::uint32_t i = 0; i < request.block_count; ++i) {
        checkBlock(message.descriptors[i], request.blocks[i]);
    }
    // The newest blocks are this event's; older ones are left over from an event that the client gave up.
    const std::uint32_t first = request.block_count - needed;
    checkSize(request.blocks[first], requestSize);
    const RequestBytes bytes = copyRequest(message.descriptors[first], request.blocks[first]);
    if (!answers) {
        session_->handle(request.event, bytes);
        return;
    }
    checkSize(request.blocks[first + 1], VAULTPAD_TA_BLOCK_KEY_ANSWER);
    // Mapped before the key is pressed: from then on nothing can keep the answer from being written.
    const AnswerBlock block(message.descriptors[first + 1], request.blocks[first + 1]);
    writeAnswer(session_->handle(request.event, bytes), block.data(), block.size());
}

}  // namespace vaultpad::secureworld
