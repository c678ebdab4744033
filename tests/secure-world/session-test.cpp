// The session on a display that fails.
#include "session/session.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "display/screen.h"
#include "log.h"
#include "rsa-client.h"
#include "sample-pads.h"
#include "vaultpad/ta-protocol.h"
#include "voice/voice-output.h"

namespace vaultpad::secureworld {
namespace {

class FailingDisplay : public Display {
public:
    explicit FailingDisplay(const bool* fails) : fails_(fails) {}
    void show(const Picture&) override { failWhenTold(); }
    void hide() override { failWhenTold(); }

private:
    void failWhenTold() const {
        if (*fails_) {
            throw std::runtime_error("unplugged");
        }
    }
    const bool* fails_;
};

class SessionOnAFailingDisplay : public testing::Test {
protected:
    SessionOnAFailingDisplay() {
        session_.handle(VAULTPAD_TA_EVENT_IME_TYPE, requestOf(typeRequest()));
        session_.handle(VAULTPAD_TA_EVENT_RENDER_CONTEXT, requestOf(renderContextRequest()));
        session_.handle(VAULTPAD_TA_EVENT_IMAGE_DATA, requestOf(imagesRequest(pinPad())));
        session_.handle(VAULTPAD_TA_EVENT_IMAGE_DONE, requestOf({}));
        session_.handle(VAULTPAD_TA_EVENT_PUBLIC_KEY, requestOf(rsa_.publicKeyRequest()));
    }

    Answer pressKey(std::uint32_t code) {
        return session_.handle(VAULTPAD_TA_EVENT_KEY, requestOf(Writer().word(2).word(code).bytes()));
    }

    RsaClient rsa_{1024};
    bool fails_ = false;
    Screen screen_{std::make_unique<FailingDisplay>(&fails_), Screen::View::Pad};
    Log log_{"none"};
    std::unique_ptr<VoiceOutput> voice_ = makeVoiceOutput({}, &log_);
    Session session_{&screen_, voice_.get(), &log_, ""};
};

TEST_F(SessionOnAFailingDisplay, RefusesTheShowAndTakesKeysOnlyAfterOneThatWorked) {
    fails_ = true;
    EXPECT_THROW(session_.handle(VAULTPAD_TA_EVENT_SHOW, requestOf({})), std::runtime_error);
    EXPECT_ANY_THROW(pressKey(VAULTPAD_TA_KEY_RETURN));
    fails_ = false;
    session_.handle(VAULTPAD_TA_EVENT_SHOW, requestOf({}));
    EXPECT_TRUE(pressKey(VAULTPAD_TA_KEY_RETURN).pressed);
}

TEST_F(SessionOnAFailingDisplay, AnswersKeysThatTheDisplayCannotFollow) {
    session_.handle(VAULTPAD_TA_EVENT_SHOW, requestOf({}));
    fails_ = true;
    EXPECT_TRUE(pressKey(VAULTPAD_TA_KEY_RETURN).pressed);
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(pressKey(VAULTPAD_TA_KEY_DOWN).pressed);
    }
    pressKey(VAULTPAD_TA_KEY_RIGHT);
    pressKey(VAULTPAD_TA_KEY_RIGHT);
    const Answer answer = pressKey(VAULTPAD_TA_KEY_RETURN);
    EXPECT_TRUE(answer.closed);
    EXPECT_EQ(1u, answer.characters);
    KeyAnswer received;
    received.encryptedKey = answer.encryptedKey;
    received.encryptedData = answer.encryptedData;
    EXPECT_EQ(plaintextOf("1"), rsa_.decrypt(received));
}

}  // namespace
}  // namespace vaultpad::secureworld
