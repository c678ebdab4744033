#include "session/answer.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <cstring>
#include <memory>
#include <stdexcept>

#include "session/refusal.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

constexpr std::size_t kPlaintextMax = PublicKey::kPrefixSizeMax + 1 + VAULTPAD_TA_TEXT_MAX * TypedText::kCharacterSize;

constexpr std::size_t padded(std::size_t size) {
    return (size / VAULTPAD_TA_CIPHER_BLOCK_SIZE + 1) * VAULTPAD_TA_CIPHER_BLOCK_SIZE;
}

constexpr std::size_t kAnswerWords = 5;

// The longest prefix and the longest text fit, so that nothing can be typed that cannot be answered.
static_assert(padded(kPlaintextMax) <= VAULTPAD_TA_ENCRYPTED_DATA_MAX, "an answer could exceed the client's room");
static_assert(kAnswerWords * sizeof(std::uint32_t) + VAULTPAD_TA_ENCRYPTED_KEY_MAX + VAULTPAD_TA_ENCRYPTED_DATA_MAX <=
                  VAULTPAD_TA_BLOCK_KEY_ANSWER,
              "an answer could exceed its block");

struct Workspace {
    std::uint8_t sessionKey[VAULTPAD_TA_SESSION_KEY_SIZE];
    std::uint8_t plaintext[kPlaintextMax];
};

class WipeAtEnd {
public:
    explicit WipeAtEnd(LockedPage* page) : page_(page) {}
    ~WipeAtEnd() { page_->wipe(); }
    WipeAtEnd(const WipeAtEnd&) = delete;
    WipeAtEnd& operator=(const WipeAtEnd&) = delete;

private:
    LockedPage* page_;
};

std::size_t compose(const TypedText& text, const std::vector<std::uint8_t>& prefix, std::uint8_t* out) {
    std::uint8_t* place = out;
    if (!prefix.empty()) {
        std::memcpy(place, prefix.data(), prefix.size());
        place += prefix.size();
    }
    *place++ = static_cast<std::uint8_t>(text.size());
    text.encode(place);
    return prefix.size() + 1 + text.size() * TypedText::kCharacterSize;
}

std::vector<std::uint8_t> encryptData(const Workspace& work, std::size_t size) {
    const std::uint8_t zeroVector[VAULTPAD_TA_CIPHER_BLOCK_SIZE] = {};
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    std::vector<std::uint8_t> result(padded(size));
    int body = 0;
    int tail = 0;
    if (!context || EVP_EncryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, work.sessionKey, zeroVector) != 1 ||
        EVP_EncryptUpdate(context.get(), result.data(), &body, work.plaintext, static_cast<int>(size)) != 1 ||
        EVP_EncryptFinal_ex(context.get(), result.data() + body, &tail) != 1) {
        throw std::runtime_error("the text cannot be encrypted");
    }
    result.resize(static_cast<std::size_t>(body) + static_cast<std::size_t>(tail));
    return result;
}

std::uint8_t* putWord(std::uint8_t* place, std::size_t value) {
    for (unsigned shift = 0; shift < 32; shift += 8) {
        *place++ = static_cast<std::uint8_t>(value >> shift & 0xff);
    }
    return place;
}

std::uint8_t* putBlob(std::uint8_t* place, const std::vector<std::uint8_t>& blob) {
    if (!blob.empty()) {
        std::memcpy(place, blob.data(), blob.size());
    }
    return place + blob.size();
}

}  // namespace

void encryptText(const TypedText& text, const PublicKey& key, LockedPage* workPage, Answer* answer) {
    static_assert(sizeof(Workspace) <= 4096, "the workspace takes more than a page");
    const WipeAtEnd wipeAtEnd(workPage);
    auto* work = reinterpret_cast<Workspace*>(workPage->data());
    if (RAND_bytes(work->sessionKey, sizeof(work->sessionKey)) != 1) {
        throw std::runtime_error("no random numbers for the session key");
    }
    const std::size_t size = compose(text, key.prefix(), work->plaintext);
    answer->encryptedKey = key.encrypt(work->sessionKey, sizeof(work->sessionKey));
    answer->encryptedData = encryptData(*work, size);
    answer->characters = static_cast<std::uint32_t>(text.size());
}

void writeAnswer(const Answer& answer, std::uint8_t* out, std::size_t size) {
    const std::size_t needed =
        kAnswerWords * sizeof(std::uint32_t) + answer.encryptedKey.size() + answer.encryptedData.size();
    if (needed > size) {
        throw Refusal("the answer takes " + std::to_string(needed) + " bytes");
    }
    std::uint8_t* place = out;
    place = putWord(place, answer.pressed ? 1 : 0);
    place = putWord(place, answer.closed ? 1 : 0);
    place = putWord(place, answer.encryptedKey.size());
    place = putWord(place, answer.encryptedData.size());
    place = putWord(place, answer.characters);
    place = putBlob(place, answer.encryptedKey);
    putBlob(place, answer.encryptedData);
}

}  // namespace vaultpad::secureworld
