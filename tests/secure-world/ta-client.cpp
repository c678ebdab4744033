#include "ta-client.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr int kChannel = 3;
constexpr int kReplyTimeout = 20000;  // ms

void require(bool ok, const char* what) {
    if (!ok) {
        throw std::runtime_error(std::string(what) + ": " + std::strerror(errno));
    }
}

std::string makeFolder() {
    std::string name = testing::TempDir() + "vaultpad-ta-XXXXXX";
    require(mkdtemp(name.data()) != nullptr, "mkdtemp");
    return name;
}

std::uint32_t wordAt(const Bytes& bytes, std::size_t index) {
    std::uint32_t value = 0;
    std::memcpy(&value, bytes.data() + index * sizeof(value), sizeof(value));
    return value;
}

}  // namespace

Writer& Writer::word(std::uint32_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes_.push_back(static_cast<std::uint8_t>(value >> shift & 0xff));
    }
    return *this;
}

Writer& Writer::string(const std::string& text) {
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    bytes_.push_back(0);
    return *this;
}

Writer& Writer::blob(const Bytes& data) {
    bytes_.insert(bytes_.end(), data.begin(), data.end());
    return *this;
}

void dropMessages() {
    const FileDescriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    dup2(nowhere.get(), STDERR_FILENO);
}

TaClient::TaClient(const Setup& setup) : folder_(makeFolder()) {
    int ends[2] = {-1, -1};
    require(socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) == 0, "socketpair");
    channel_ = FileDescriptor(ends[0]);
    const FileDescriptor taEnd(ends[1]);
    process_ = fork();
    require(process_ >= 0, "fork");
    if (process_ == 0) {
        runChild(setup, taEnd.get());
    }
}

TaClient::~TaClient() {
    closeChannel();
    if (!ended_ && waitForEnd(5) == -1 && !ended_) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

void TaClient::runChild(const Setup& setup, int channel) const {
    for (const std::string& variable : setup.environment) {
        const std::size_t equals = variable.find('=');
        setenv(variable.substr(0, equals).c_str(), variable.substr(equals + 1).c_str(), 1);
    }
    if (geteuid() != 0) {
        // The leak check attaches to the process like a debugger, which this program does not allow.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    }
    std::vector<std::string> words = {VAULTPAD_TA_EXECUTABLE, "--channel", std::to_string(kChannel)};
    if (setup.ownLog) {
        words.insert(words.end(), {"--log", folder_ + "/log"});
    }
    words.insert(words.end(), setup.options.begin(), setup.options.end());
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    // Opened before inChild() may give up the right to reach it.
    const int program = ::open(VAULTPAD_TA_EXECUTABLE, O_PATH | O_CLOEXEC);
    setup.inChild();
    if (channel == kChannel) {
        fcntl(channel, F_SETFD, 0);
    } else {
        dup2(channel, kChannel);
    }
    if (program == kChannel) {
        execv(arguments[0], arguments.data());
    }
    fexecve(program, arguments.data(), environ);
    _exit(127);
}

VaultPadChannelRequest TaClient::openRequest() {
    VaultPadChannelRequest request = {};
    request.magic = VAULTPAD_CHANNEL_MAGIC;
    request.version = VAULTPAD_CHANNEL_VERSION;
    request.kind = VAULTPAD_CHANNEL_OPEN;
    const std::uint8_t uuid[] = {0x6f, 0x1d, 0x3c, 0x52, 0x8a, 0x47, 0x4b, 0xe9,
                                 0x9c, 0x21, 0x5e, 0x77, 0x0b, 0xd4, 0x38, 0xf6};
    std::memcpy(request.uuid, uuid, sizeof(uuid));
    return request;
}

int TaClient::open() {
    const VaultPadChannelRequest request = openRequest();
    return exchange(&request, sizeof(request), {});
}

std::uint32_t TaClient::blockSize(std::uint32_t event) {
    switch (event) {
        case VAULTPAD_TA_EVENT_IMAGE_DATA:
        case VAULTPAD_TA_EVENT_RENDER_CONTEXT:
            return 6144000;
        case VAULTPAD_TA_EVENT_SHOW:
        case VAULTPAD_TA_EVENT_IMAGE_DONE:
            return 102400;
        case VAULTPAD_TA_EVENT_PUBLIC_KEY:
            return 2048;
        case VAULTPAD_TA_EVENT_VOICE_DATA:
            return 7168000;
        case VAULTPAD_TA_EVENT_IME_TYPE:
            return 1024;
        default:
            return 100;
    }
}

FileDescriptor TaClient::makeBlock(const BlockSpec& spec) {
    FileDescriptor file(memfd_create("block", MFD_ALLOW_SEALING | MFD_CLOEXEC));
    require(file.valid() && ftruncate(file.get(), static_cast<off_t>(spec.size)) == 0, "memfd");
    require(
        pwrite(file.get(), spec.content.data(), spec.content.size(), 0) == static_cast<ssize_t>(spec.content.size()),
        "pwrite");
    const int seals = (spec.sealed ? F_SEAL_SHRINK | F_SEAL_GROW : F_SEAL_GROW) | (spec.readOnly ? F_SEAL_WRITE : 0);
    require(fcntl(file.get(), F_ADD_SEALS, seals) == 0, "seals");
    return file;
}

int TaClient::invoke(std::uint32_t event, const Bytes& content) {
    return invokeBlocks(event, {{blockSize(event), content}});
}

namespace {

VaultPadChannelRequest invokeRequest(std::uint32_t event, const std::vector<BlockSpec>& blocks) {
    VaultPadChannelRequest request = TaClient::openRequest();
    request.kind = VAULTPAD_CHANNEL_INVOKE;
    request.event = event;
    request.block_count = static_cast<std::uint32_t>(blocks.size());
    for (std::size_t i = 0; i < blocks.size() && i < VAULTPAD_CHANNEL_BLOCKS_MAX; ++i) {
        const auto written = static_cast<std::uint32_t>(blocks[i].content.size());
        request.blocks[i] = {blocks[i].announcedSize.value_or(blocks[i].size),
                             blocks[i].announcedWritten.value_or(written)};
    }
    return request;
}

std::vector<int> numbersOf(const std::vector<FileDescriptor>& files) {
    std::vector<int> numbers;
    for (const FileDescriptor& file : files) {
        numbers.push_back(file.get());
    }
    return numbers;
}

}  // namespace

int TaClient::invokeBlocks(std::uint32_t event, const std::vector<BlockSpec>& blocks) {
    std::vector<FileDescriptor> files;
    for (const BlockSpec& block : blocks) {
        files.push_back(makeBlock(block));
    }
    const VaultPadChannelRequest request = invokeRequest(event, blocks);
    return exchange(&request, sizeof(request), numbersOf(files));
}

KeyAnswer TaClient::key(std::uint32_t code) {
    return keyWith({100, Writer().word(2).word(code).bytes()}, {2048, {}});
}

KeyAnswer TaClient::keyWith(const BlockSpec& request, const BlockSpec& answer, const std::vector<BlockSpec>& older) {
    std::vector<BlockSpec> blocks = older;
    blocks.insert(blocks.end(), {request, answer});
    std::vector<FileDescriptor> files;
    for (const BlockSpec& block : blocks) {
        files.push_back(makeBlock(block));
    }
    const VaultPadChannelRequest message = invokeRequest(VAULTPAD_TA_EVENT_KEY, blocks);
    KeyAnswer result;
    result.result = exchange(&message, sizeof(message), numbersOf(files));
    Bytes bytes(answer.size);
    require(pread(files.back().get(), bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()), "pread");
    constexpr std::size_t kWords = 5;
    if (bytes.size() < kWords * sizeof(std::uint32_t)) {
        return result;
    }
    result.pressed = wordAt(bytes, 0);
    result.closed = wordAt(bytes, 1);
    result.characters = wordAt(bytes, 4);
    const auto key = bytes.begin() + kWords * sizeof(std::uint32_t);
    const auto data = key + static_cast<std::ptrdiff_t>(wordAt(bytes, 2));
    result.encryptedKey.assign(key, data);
    result.encryptedData.assign(data, data + static_cast<std::ptrdiff_t>(wordAt(bytes, 3)));
    return result;
}

int TaClient::exchange(const void* data, std::size_t size, const std::vector<int>& descriptors) {
    iovec part = {const_cast<void*>(data), size};
    std::vector<char> control(CMSG_SPACE(descriptors.size() * sizeof(int)));
    msghdr header = {};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    if (!descriptors.empty()) {
        header.msg_control = control.data();
        header.msg_controllen = control.size();
        cmsghdr* message = CMSG_FIRSTHDR(&header);
        message->cmsg_level = SOL_SOCKET;
        message->cmsg_type = SCM_RIGHTS;
        message->cmsg_len = CMSG_LEN(descriptors.size() * sizeof(int));
        std::memcpy(CMSG_DATA(message), descriptors.data(), descriptors.size() * sizeof(int));
    }
    if (sendmsg(channel_.get(), &header, MSG_NOSIGNAL) < 0) {
        return kEnded;
    }
    pollfd readable = {channel_.get(), POLLIN, 0};
    VaultPadChannelReply reply = {};
    if (poll(&readable, 1, kReplyTimeout) != 1 ||
        recv(channel_.get(), &reply, sizeof(reply), 0) != static_cast<ssize_t>(sizeof(reply))) {
        return kEnded;
    }
    EXPECT_EQ(static_cast<std::uint32_t>(VAULTPAD_CHANNEL_MAGIC), reply.magic);
    return reply.result;
}

std::string TaClient::log() const {
    std::ifstream file(folder_ + "/log");
    return std::string(std::istreambuf_iterator<char>(file), {});
}

int TaClient::waitForEnd(int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (!ended_ && std::chrono::steady_clock::now() < deadline) {
        ended_ = waitpid(process_, &status_, WNOHANG) == process_;
        if (!ended_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }
    return ended_ && WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

}  // namespace vaultpad::secureworld
