// What comes back from typing on the real trusted application.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "rsa-client.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

class Typing : public testing::TestWithParam<unsigned> {};

TEST_P(Typing, IsAnsweredWithTheTextUnderTheClientsKey) {
    const RsaClient rsa(GetParam());
    const Bytes prefix = {0xde, 0xad, 0, 0x01};
    TaClient client;
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest(prefix))) << client.log();
    const KeyAnswer typed = press(&client, kType2580);
    EXPECT_EQ(1u, typed.pressed);
    EXPECT_EQ(0u, typed.closed);
    EXPECT_EQ(0u, typed.characters);
    EXPECT_TRUE(typed.encryptedKey.empty());
    EXPECT_TRUE(typed.encryptedData.empty());
    const KeyAnswer done = press(&client, kFinish);
    EXPECT_EQ(1u, done.pressed);
    EXPECT_EQ(1u, done.closed);
    EXPECT_EQ(4u, done.characters);
    EXPECT_EQ(GetParam() / 8, done.encryptedKey.size());
    EXPECT_EQ(16u, done.encryptedData.size());
    EXPECT_EQ(plaintextOf("2580", prefix), rsa.decrypt(done));
}

TEST(CryptographyUnderAClientsEnvironment, ReadsNoConfigurationThatTheClientNames) {
    const TemporaryFolder folder;
    const std::string configuration = folder / "openssl.cnf";
    // Leaves nothing to encrypt with, where it is read.
    std::ofstream(configuration) << "openssl_conf = setup\n[setup]\nproviders = all\n[all]\nnull = only\n"
                                    "[only]\nactivate = 1\n";
    TaClient::Setup setup;
    setup.environment = {"OPENSSL_CONF=" + configuration};
    TaClient client(setup);
    const RsaClient rsa(1024);
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest())) << client.log();
    press(&client, kType2580);
    EXPECT_EQ(plaintextOf("2580"), rsa.decrypt(press(&client, kFinish)));
}

INSTANTIATE_TEST_SUITE_P(KeySizes, Typing, testing::Values(1024u, 2048u), testing::PrintToStringParamName());

class TypingOnAPinPad : public testing::Test {
protected:
    void start(const TypeRequest& type = {}, const Bytes& prefix = {}) {
        ASSERT_NO_FATAL_FAILURE(showPad(&client_, pinPad(), type));
        ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa_.publicKeyRequest(prefix))) << client_.log();
    }

    RsaClient rsa_{1024};
    TaClient client_;
};

TEST_F(TypingOnAPinPad, TellsWhetherAKeyDidSomething) {
    start();
    EXPECT_EQ(0u, press(&client_, "u").pressed);
    EXPECT_EQ(1u, press(&client_, "r").pressed);
    EXPECT_EQ(1u, press(&client_, "!").pressed);
    EXPECT_EQ(1u, press(&client_, "dddr!").pressed);
    EXPECT_EQ(0u, press(&client_, "!").pressed) << "nothing left to take back";
}

TEST_F(TypingOnAPinPad, CompletesByItselfAtTheAnnouncedNumberOfDigits) {
    TypeRequest type;
    type.extra = 4;
    start(type);
    EXPECT_EQ(0u, press(&client_, "r!d!d!").closed);
    const KeyAnswer done = press(&client_, "d!");
    EXPECT_EQ(1u, done.closed);
    EXPECT_EQ(plaintextOf("2580"), rsa_.decrypt(done));
}

TEST_F(TypingOnAPinPad, FitsTheLongestTextBehindTheLongestPrefix) {
    const Bytes prefix(256, 0x77);
    start({}, prefix);
    EXPECT_EQ(0u, press(&client_, std::string(41, '!')).pressed);
    const KeyAnswer done = press(&client_, "ddddrr!");
    EXPECT_EQ(40u, done.characters);
    EXPECT_EQ(352u, done.encryptedData.size());
    EXPECT_EQ(plaintextOf(std::string(40, '1'), prefix), rsa_.decrypt(done));
}

TEST_F(TypingOnAPinPad, HandsNothingOutWhenItIsCancelled) {
    start();
    const KeyAnswer answer = press(&client_, "!!dddd!");
    EXPECT_EQ(1u, answer.pressed);
    EXPECT_EQ(1u, answer.closed);
    EXPECT_EQ(0u, answer.characters);
    EXPECT_TRUE(answer.encryptedKey.empty());
    EXPECT_TRUE(answer.encryptedData.empty());
}

TEST_F(TypingOnAPinPad, RefusesKeysOnceItIsCompletedOrCancelled) {
    start();
    press(&client_, "dddd!");
    EXPECT_EQ(-1, client_.key(VAULTPAD_TA_KEY_RETURN).result);
    EXPECT_NE(std::string::npos, client_.log().find("a key after the pad was closed"));
}

TEST_F(TypingOnAPinPad, BeginsANewEntryWithTheNextShow) {
    start();
    press(&client_, std::string(kType2580) + kFinish);
    ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_SHOW)) << client_.log();
    ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa_.publicKeyRequest())) << client_.log();
    press(&client_, "!");
    const KeyAnswer done = press(&client_, "ddddrr!");
    EXPECT_EQ(plaintextOf("1"), rsa_.decrypt(done));
}

TEST_F(TypingOnAPinPad, UsesAFreshSessionKeyForEachAnswer) {
    start();
    const Bytes first = rsa_.sessionKey(press(&client_, std::string(kType2580) + kFinish));
    ASSERT_EQ(0, client_.invoke(VAULTPAD_TA_EVENT_SHOW));
    const Bytes second = rsa_.sessionKey(press(&client_, std::string(kType2580) + kFinish));
    EXPECT_EQ(32u, first.size());
    EXPECT_EQ(32u, second.size());
    EXPECT_NE(first, second);
}

TEST_F(TypingOnAPinPad, NeverLogsWhatWasTyped) {
    start();
    press(&client_, std::string(kType2580) + kFinish);
    const std::string log = client_.log();
    EXPECT_EQ(std::string::npos, log.find("2580"));
    EXPECT_EQ(std::string::npos, log.find("key."));
    EXPECT_EQ(std::string::npos, log.find("focus"));
    // Show and completion, whatever the keys in between.
    EXPECT_EQ(2, std::count(log.begin(), log.end(), '\n')) << log;
}

TEST(TypingWithoutAPublicKey, RefusesToCompleteAndKeepsTheText) {
    const RsaClient rsa(1024);
    TaClient client;
    TypeRequest type;
    type.extra = 4;
    ASSERT_NO_FATAL_FAILURE(showPad(&client, pinPad(), type));
    press(&client, "r!d!d!d");
    EXPECT_EQ(-1, client.key(VAULTPAD_TA_KEY_RETURN).result);
    EXPECT_NE(std::string::npos, client.log().find("without a public key"));
    press(&client, "dr");
    EXPECT_EQ(-1, client.key(VAULTPAD_TA_KEY_RETURN).result);
    // Still open, and still not to be had for a key that comes after the typing.
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest()));
    EXPECT_EQ(1u, press(&client, "lu").pressed);
}

TEST(TypingOnAKeyboard, SendsEachCharacterAsOneLittleEndianUnit) {
    const RsaClient rsa(1024);
    TaClient client;
    TypeRequest type;
    type.type = 2;
    std::vector<SampleImage> images;
    const char* stems[] = {"key.EuroSign", "key.A", "key.Return"};
    for (int i = 0; i < 3; ++i) {
        images.push_back({stems[i] + std::string(".normal"), {i * 24, 0, 20, 10}, {}});
        images.push_back({stems[i] + std::string(".focus"), {i * 24, 0, 20, 10}, {}});
    }
    ASSERT_NO_FATAL_FAILURE(showPad(&client, images, type));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest()));
    EXPECT_EQ((Bytes{2, 0xac, 0x20, 'A', 0}), rsa.decrypt(press(&client, "!r!r!")));
}

TEST(TypingOnATurnedScreen, FollowsTheViewersArrows) {
    const RsaClient rsa(1024);
    for (const std::uint32_t orientation : {1u, 3u}) {
        TaClient client;
        TypeRequest type;
        type.orientation = orientation;
        std::vector<SampleImage> images = pinPad();
        for (SampleImage& image : images) {
            const Rect upright = image.place;
            // As the client places them: 104 is the pad's height, 76 its width.
            image.place = orientation == 1 ? Rect{104 - upright.bottom(), upright.x, upright.height, upright.width}
                                           : Rect{upright.y, 76 - upright.right(), upright.height, upright.width};
        }
        ASSERT_NO_FATAL_FAILURE(showPad(&client, images, type));
        ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_PUBLIC_KEY, rsa.publicKeyRequest()));
        press(&client, kType2580);
        EXPECT_EQ(plaintextOf("2580"), rsa.decrypt(press(&client, kFinish))) << "orientation " << orientation;
    }
}

}  // namespace
}  // namespace vaultpad::secureworld
