// The typed text and the session key: nowhere in the client's memory before it decrypts and after it has freed, nowhere
// in the trusted application's after its answer, nowhere in a log but in the one line that is meant to say it.
#include <gtest/gtest.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "client-process.h"
#include "process-memory.h"
#include "processes.h"
#include "television.h"

namespace {

// Keys of the keyboard's first row, in an order that nothing else has in its memory.
constexpr const char* kText = "84061735920468135729";
constexpr const char* kFirstRow = "1234567890";
constexpr const char* kDone =
    "Wait,Down,Down,Down,Down,Down,Down,Right,Right,Right,Right,Right,Right,Right,Right,Right,Right,"
    "Right,Right,Right,Right,Return";
constexpr int kKeyBits = 2048;
constexpr int kKeyBytes = kKeyBits / 8;
constexpr int kPublicExponentBytes = 3;
constexpr std::size_t kSessionKeyBytes = 32;
const std::vector<std::string> kNowhere;

std::string pressesOf(const std::string& text) {
    std::string presses;
    std::size_t focus = 0;
    const std::string row = kFirstRow;
    for (const char character : text) {
        const std::size_t key = row.find(character);
        for (; focus < key; ++focus) {
            presses += "Right,";
        }
        for (; focus > key; --focus) {
            presses += "Left,";
        }
        presses += "Return,";
    }
    return presses + kDone;
}

std::string withBytesBetween(const std::string& text, std::size_t zeros) {
    std::string wide;
    for (const char character : text) {
        wide += character;
        wide.append(zeros, '\0');
    }
    return wide;
}

std::string bytesOf(const std::string& hexadecimal) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(hexadecimal.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

// Piece by piece: what was freed without being wiped has lost its first bytes to the heap's own notes.
void expectNone(const ProcessMemory& memory, const std::string& secret, std::size_t pieceSize,
                const std::string& what) {
    ASSERT_GE(secret.size(), pieceSize);
    for (std::size_t place = 0; place + pieceSize <= secret.size(); place += pieceSize) {
        EXPECT_EQ(kNowhere, memory.placesOf(secret.substr(place, pieceSize))) << what << ", from byte " << place;
    }
}

// A client's key pair, which this process keeps too, to find out the session key.
class Keys {
public:
    Keys() : key_(EVP_RSA_gen(kKeyBits), EVP_PKEY_free) {}

    std::string numbers() const {
        return number(OSSL_PKEY_PARAM_RSA_N, kKeyBytes) + number(OSSL_PKEY_PARAM_RSA_E, kPublicExponentBytes) +
               number(OSSL_PKEY_PARAM_RSA_D, kKeyBytes);
    }

    std::string decrypted(const std::string& encrypted) const {
        const std::unique_ptr<EVP_PKEY_CTX, void (*)(EVP_PKEY_CTX*)> context(EVP_PKEY_CTX_new(key_.get(), nullptr),
                                                                             EVP_PKEY_CTX_free);
        EVP_PKEY_decrypt_init(context.get());
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING);
        std::string plain(kKeyBytes, '\0');
        std::size_t size = plain.size();
        const auto* in = reinterpret_cast<const unsigned char*>(encrypted.data());
        auto* out = reinterpret_cast<unsigned char*>(plain.data());
        const bool done = EVP_PKEY_decrypt(context.get(), out, &size, in, encrypted.size()) == 1;
        plain.resize(done ? size : 0);
        return plain;
    }

private:
    std::string number(const char* name, int size) const {
        BIGNUM* value = nullptr;
        EVP_PKEY_get_bn_param(key_.get(), name, &value);
        std::string bytes(static_cast<std::size_t>(size), '\0');
        BN_bn2binpad(value, reinterpret_cast<unsigned char*>(bytes.data()), size);
        BN_clear_free(value);
        return bytes;
    }

    std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key_;
};

// A client of the library as it is built, or of the one that leaves the decrypted text out of the log.
struct Library {
    const char* name;
    const char* client;
    std::size_t linesWithTheText;
};

void PrintTo(const Library& library, std::ostream* out) {
    *out << library.name;
}

class Secrets : public testing::TestWithParam<Library> {
protected:
    Secrets() {
        television_.apply();
        const std::string path = (television_.folder() / "numbers").string();
        std::ofstream(path, std::ios::binary) << keys_.numbers();
        client_ = std::make_unique<ClientProcess>(std::vector<std::string>{GetParam().client, path, pressesOf(kText)});
        // The text stands in the pad, and Done is not pressed yet.
        EXPECT_EQ("waiting", client_->line()) << television_.log();
    }

    void pressDone() {
        client_->proceed();
        std::istringstream line(client_->line());
        std::string word;
        std::string key;
        line >> word >> key;
        EXPECT_EQ("typed", word) << television_.log();
        sessionKey_ = keys_.decrypted(bytesOf(key));
        EXPECT_EQ(kSessionKeyBytes, sessionKey_.size());
    }

    void goOnTo(const std::string& step) {
        client_->proceed();
        ASSERT_EQ(step, client_->line());
    }

    static void expectNoText(const ProcessMemory& memory, const std::string& when) {
        ASSERT_TRUE(memory.readable());
        expectNone(memory, kText, 10, "the text, " + when);
        expectNone(memory, withBytesBetween(kText, 1), 16, "the text in 16-bit characters, " + when);
        expectNone(memory, withBytesBetween(kText, 3), 32, "the text in 32-bit characters, " + when);
    }

    void expectNoSecret(const ProcessMemory& memory, const std::string& when) const {
        expectNoText(memory, when);
        expectNone(memory, sessionKey_, 8, "the session key, " + when);
    }

    ProcessMemory clientMemory() const { return ProcessMemory(client_->pid()); }

    pid_t trustedApplication() const {
        const std::vector<pid_t> found = childrenNamed(client_->pid(), "vaultpad-ta");
        return found.empty() ? -1 : found.front();
    }

    Television television_;
    Keys keys_;
    std::unique_ptr<ClientProcess> client_;
    std::string sessionKey_;
};

TEST_P(Secrets, AreNotInTheClientsMemoryBeforeItDecrypts) {
    expectNoText(clientMemory(), "while it is typed");
    pressDone();
    expectNoSecret(clientMemory(), "before decryption");
}

TEST_P(Secrets, AreFoundByTheSearchWhileTheClientHoldsTheText) {
    pressDone();
    goOnTo("decrypted");
    EXPECT_FALSE(clientMemory().placesOf(kText).empty());
}

TEST_P(Secrets, SessionKeyIsGoneAsSoonAsTheClientHasTheText) {
    pressDone();
    goOnTo("decrypted");
    const ProcessMemory memory = clientMemory();
    expectNone(memory, sessionKey_, 8, "the session key");
    expectNone(memory, withBytesBetween(kText, 1), 16, "the text in 16-bit characters");
}

TEST_P(Secrets, AreNotInTheClientsMemoryAfterItHasFreedTheText) {
    pressDone();
    goOnTo("decrypted");
    goOnTo("freed");
    expectNoSecret(clientMemory(), "after the text was freed");
    goOnTo("closed");
    expectNoSecret(clientMemory(), "after the session was closed");
}

TEST_P(Secrets, AreNotInTheTrustedApplicationsMemoryAfterItsAnswer) {
    const ProcessMemory before(trustedApplication());
    if (!before.readable()) {
        GTEST_SKIP() << "the trusted application is not dumpable: only root can read its memory";
    }
    EXPECT_EQ(1u, before.placesOf(withBytesBetween(kText, 1)).size()) << "the search does not find what is typed";
    pressDone();
    expectNoSecret(ProcessMemory(trustedApplication()), "in the trusted application");
}

TEST_P(Secrets, AreInNoLogButTheLineThatIsMeantToSayTheText) {
    pressDone();
    goOnTo("decrypted");
    goOnTo("freed");
    goOnTo("closed");
    const std::string log = television_.log();
    std::size_t lines = 0;
    for (std::size_t place = log.find(kText); place != std::string::npos; place = log.find(kText, place + 1)) {
        ++lines;
    }
    EXPECT_EQ(GetParam().linesWithTheText, lines);
    EXPECT_EQ(lines == 1, log.find(std::string("decrypted msg = [") + kText + "]") != std::string::npos);
    std::ostringstream taLog;
    taLog << std::ifstream(television_.folder() / "ta-log").rdbuf();
    EXPECT_EQ(std::string::npos, taLog.str().find(kText));
}

INSTANTIATE_TEST_SUITE_P(, Secrets,
                         testing::Values(Library{"AsBuilt", VAULTPAD_TYPING_CLIENT, VAULTPAD_LOG_DECRYPTED_TEXT},
                                         Library{"WithoutTheLogLine", VAULTPAD_SILENT_TYPING_CLIENT, 0}),
                         [](const auto& library) { return std::string(library.param.name); });

}  // namespace
