// A session of the emulated TA: any events with any contents, from its start or on a pad that is already shown.
#include <vaultpad/ta-protocol.h>

#include <memory>
#include <string>

#include "display/screen.h"
#include "fuzzer.h"
#include "log.h"
#include "platform/host/secure-channel-wire.h"
#include "request.h"
#include "session/refusal.h"
#include "session/session.h"
#include "voice/voice-output.h"
#include "voice/wave-file.h"

using vaultpad::fuzz::Input;
using vaultpad::fuzz::requestOf;
using vaultpad::fuzz::require;
using namespace vaultpad::secureworld;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kEventsMax = 64;
constexpr std::size_t kModulusSize = 128;

class PickyDisplay : public Display {
public:
    explicit PickyDisplay(bool wantsPictures) : wantsPictures_(wantsPictures) {}
    bool wantsPictures() const override { return wantsPictures_; }
    void show(const Picture& picture) override {
        require(picture.width > 0 && picture.width <= VAULTPAD_TA_SCREEN_WIDTH);
        require(picture.height > 0 && picture.height <= VAULTPAD_TA_SCREEN_WIDTH);
    }

private:
    bool wantsPictures_;
};

class PickyVoice : public VoiceOutput {
public:
    void speak(const std::vector<VoiceClip>& clips) override {
        for (const VoiceClip& clip : clips) {
            require(clip.sound && !clip.sound->empty());
        }
        checkWaveFile(joinedWaveFile(clips));
    }
};

class Writer {
public:
    Writer& word(std::uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
        }
        return *this;
    }
    Writer& add(const std::string& text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        return *this;
    }
    Writer& add(std::size_t count, std::uint8_t value) {
        bytes_.insert(bytes_.end(), count, value);
        return *this;
    }
    const Bytes& bytes() const { return bytes_; }

private:
    Bytes bytes_;
};

// One session and what is sent to it. A refused event must leave no trace; that it does not crash is what is tested.
class Conversation {
public:
    explicit Conversation(bool pictures) : screen_(std::make_unique<PickyDisplay>(pictures), Screen::View::Pad) {}

    void send(std::uint32_t event, const Bytes& request) {
        try {
            const Answer answer = session_.handle(event, requestOf(request));
            Bytes block(VAULTPAD_TA_BLOCK_KEY_ANSWER);
            writeAnswer(answer, block.data(), block.size());
        } catch (const Refusal&) {
            ++refused_;
        }
    }

    // Brings up a pad of two keys; every one of these events is proper.
    void prepare(std::uint32_t type, std::uint32_t orientation) {
        send(VAULTPAD_TA_EVENT_IME_TYPE,
             Writer().word(type).word(4).word(0).word(0).word(0).word(orientation).word(10).word(20).bytes());
        send(VAULTPAD_TA_EVENT_RENDER_CONTEXT, Writer()
                                                   .word(sizeof(VaultPadTuiDescription))
                                                   .word(VAULTPAD_TUI_MAGIC)
                                                   .word(VAULTPAD_TUI_VERSION)
                                                   .word(VAULTPAD_TA_SCREEN_WIDTH)
                                                   .word(VAULTPAD_TA_SCREEN_HEIGHT)
                                                   .word(VAULTPAD_TUI_ARGB6666)
                                                   .bytes());
        const char* const ids[] = {"background",        "input",           "mask", "key.1.normal", "key.1.focus",
                                   "key.Return.normal", "key.Return.focus"};
        Writer images;
        images.word(static_cast<std::uint32_t>(std::size(ids)));
        for (std::uint32_t i = 0; i < std::size(ids); ++i) {
            images.add("/root/").add(ids[i]).add(std::string(".ppm") + '\0');
            images.word(4).word(2).word(i / 2 * 5).word(0).word(24).add(24, 0x5a);
        }
        send(VAULTPAD_TA_EVENT_IMAGE_DATA, images.bytes());
        send(VAULTPAD_TA_EVENT_IMAGE_DONE, {});
        send(VAULTPAD_TA_EVENT_PUBLIC_KEY,
             Writer().word(0).word(0).word(kModulusSize).word(1).add(kModulusSize, 0xc5).add(1, 3).word(0).bytes());
        send(VAULTPAD_TA_EVENT_SHOW, {});
        require(refused_ == 0);
    }

private:
    Screen screen_;
    Log log_{"none"};
    PickyVoice voice_;
    Session session_{&screen_, &voice_, &log_, ""};
    int refused_ = 0;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint8_t start = input.byte();
    // Composing a screen takes a thousand times as long as an event: few sessions are looked at.
    Conversation conversation(start % 64 == 1);
    if (start % 2 == 1) {
        const std::uint32_t orientation = start / 64;
        conversation.prepare(1 + start / 32 % 2, orientation == 2 ? 0 : orientation);
    }
    for (int i = 0; i < kEventsMax && !input.empty(); ++i) {
        const std::uint32_t event = input.byte();
        conversation.send(event, input.bytes(input.shortWord()));
    }
    return 0;
}
