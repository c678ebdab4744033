// From an encrypted result back to the typed text, with the client's RSA private key.
#include <vaultpad-platform/crypto-core.h>
#include <vaultpad/ta-protocol.h>
#include <vaultpad/vaultpad.h>

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "log.h"
#include "wipe.h"

using vaultpad::SecretBytes;
using vaultpad::wipe;

namespace {

constexpr unsigned int kBlock = VAULTPAD_TA_CIPHER_BLOCK_SIZE;
constexpr unsigned int kBitsPerByte = 8;
constexpr std::size_t kUnitBytes = 2;

struct DestroyContainer {
    void operator()(CryptoCoreContainer* container) const { destroy_CryptoCoreContainer(container); }
};
using Container = std::unique_ptr<CryptoCoreContainer, DestroyContainer>;

// The private working record, wiped when it goes.
class WorkingRecord {
public:
    WorkingRecord() = default;
    ~WorkingRecord() { wipe(&record_, sizeof(record_)); }
    WorkingRecord(const WorkingRecord&) = delete;
    WorkingRecord& operator=(const WorkingRecord&) = delete;

    // Bytes longer than their field run on into the next ones, up to the record's end; beyond it the process ends.
    void put(std::size_t offset, const unsigned char* bytes, unsigned int length) {
        if (length > sizeof(record_) - offset) {
            VPAD_LOG_ERROR("input of %u bytes exceeds the record", length);
            wipe(&record_, sizeof(record_));
            std::abort();
        }
        if (length != 0) {
            std::memcpy(reinterpret_cast<unsigned char*>(&record_) + offset, bytes, length);
        }
    }
    const unsigned char* at(std::size_t offset) const {
        return reinterpret_cast<const unsigned char*>(&record_) + offset;
    }
    AppResult* operator->() { return &record_; }

private:
    AppResult record_ = {};
};

// The algorithm for a modulus of this many bits, 0 when there is none.
int rsaAlgorithm(unsigned int bits) {
    switch (bits) {
        case 2048:
            return VAULTPAD_CRYPTO_RSA_2048;
        case 1024:
            return VAULTPAD_CRYPTO_RSA_1024;
        default:
            return 0;
    }
}

void decryptSessionKey(int algorithm, WorkingRecord& record, SecretBytes& sessionKey) {
    const Container rsa(create_CryptoCoreContainer(algorithm));
    int keySet = -1;
    int decrypted = -1;
    if (rsa) {
        const CryptoCoreOperations& operations = *rsa->operations;
        keySet = operations.set_key_pair(rsa.get(), VAULTPAD_CRYPTO_PADDING_PKCS1_V15,
                                         record.at(offsetof(AppResult, rsa_modulus)), record->rsa_modulus_len, nullptr,
                                         0, record.at(offsetof(AppResult, rsa_private_exponent)),
                                         record->rsa_private_exponent_len);
        auto length = static_cast<std::uint32_t>(sessionKey.size());
        decrypted = operations.decrypt(rsa.get(), record.at(offsetof(AppResult, enc_key)), record->enc_key_len,
                                       sessionKey.data(), &length);
    }
    if (keySet != 0 || decrypted != 0) {
        VPAD_LOG_ERROR("DECRYPT RSA SESSION KEY ERROR rt1 = %d, rt2 = %d, rt3 = %d", keySet, decrypted, 0);
    }
}

// One step of the cipher, appended at `used`. A step that failed has added nothing.
using CipherStep = int (*)(CryptoCoreContainer*, const std::uint8_t*, std::uint32_t, std::uint8_t*, std::uint32_t*);
int append(CipherStep step, CryptoCoreContainer* aes, const unsigned char* in, unsigned int inLength,
           SecretBytes& plaintext, std::size_t& used) {
    const auto room = static_cast<std::uint32_t>(plaintext.size() - used);
    std::uint32_t written = room;
    const int result = step(aes, in, inLength, plaintext.data() + used, &written);
    if (result == 0 && written <= room) {
        used += written;
    }
    return result;
}

// Returns how many bytes of plaintext came out. Data shorter than one block has none.
std::size_t decryptData(WorkingRecord& record, const SecretBytes& sessionKey, SecretBytes& plaintext) {
    const unsigned int length = record->enc_data_len;
    if (length < kBlock) {
        VPAD_LOG_ERROR("encrypted data of %u bytes is shorter than a block", length);
        return 0;
    }
    const Container aes(create_CryptoCoreContainer(VAULTPAD_CRYPTO_AES_256));
    int started = -1;
    int updated = -1;
    int finished = -1;
    std::size_t used = 0;
    if (aes) {
        const unsigned char vector[kBlock] = {};
        const unsigned char* data = record.at(offsetof(AppResult, enc_data));
        const unsigned int body = length - kBlock;
        started = aes->operations->init(aes.get(), VAULTPAD_CRYPTO_MODE_CBC, VAULTPAD_CRYPTO_PADDING_PKCS7,
                                        sessionKey.data(), static_cast<std::uint32_t>(sessionKey.size()), vector);
        updated = append(aes->operations->update, aes.get(), data, body, plaintext, used);
        finished = append(aes->operations->final, aes.get(), data + body, kBlock, plaintext, used);
    }
    if (started != 0 || updated != 0 || finished != 0) {
        VPAD_LOG_ERROR("DECRYPT AES DATA ERROR rt1 = %d, rt2 = %d, rt3 = %d", started, updated, finished);
    }
    return used;
}

// One position per character: what a multi-byte character spills into the next positions is overwritten by the next
// character. Intended. Stops at the first character that the locale has no bytes for.
void decodeText(const SecretBytes& units, SecretBytes& text) {
    if (units.size() < kUnitBytes) {
        return;
    }
    for (std::size_t i = 0; i < units.size() / kUnitBytes; ++i) {
        std::uint16_t unit = 0;
        std::memcpy(&unit, units.data() + i * kUnitBytes, kUnitBytes);
        if (std::wctomb(reinterpret_cast<char*>(text.data()) + i, static_cast<wchar_t>(unit)) < 0) {
            break;
        }
    }
}

// Copies the text into the buffer that the client gets; null when memory runs out.
char* handOut(const SecretBytes& text) {
    auto* buffer = static_cast<char*>(std::calloc(1, VAULTPAD_TEXT_BUFFER_SIZE));
    if (buffer != nullptr) {
        std::memcpy(buffer, text.data(), VAULTPAD_TEXT_LENGTH_MAX);
    }
    return buffer;
}

}  // namespace

int CsapiVPADdecryptWithRSAKeyPair(const unsigned char* modulus, unsigned int modulus_len,
                                   const unsigned char* private_exponent, unsigned int private_exponent_len,
                                   unsigned int prefix_len, const unsigned char* enc_key, unsigned int enc_key_len,
                                   const unsigned char* enc_data, unsigned int enc_data_len, char** out_text,
                                   unsigned int* out_text_len) try {
    *out_text = nullptr;
    *out_text_len = 0;
    WorkingRecord record;
    record.put(offsetof(AppResult, enc_key), enc_key, enc_key_len);
    record.put(offsetof(AppResult, enc_data), enc_data, enc_data_len);
    record.put(offsetof(AppResult, rsa_modulus), modulus, modulus_len);
    record.put(offsetof(AppResult, rsa_private_exponent), private_exponent, private_exponent_len);
    record->enc_key_len = enc_key_len;
    record->enc_data_len = enc_data_len;
    record->rsa_modulus_len = modulus_len;
    record->rsa_private_exponent_len = private_exponent_len;
    VPAD_LOG_INFO("INPARAM %d, %d, %d,%d, %d,", modulus_len, private_exponent_len, prefix_len, enc_key_len,
                  enc_data_len);
    if (enc_key_len == 0) {
        return 0;
    }
    const unsigned int bits = modulus_len * kBitsPerByte;
    const int algorithm = rsaAlgorithm(bits);
    if (algorithm == 0) {
        VPAD_LOG_ERROR("not support RSA for len %d", bits);
        return 0;
    }
    VPAD_LOG_INFO("decrypt session key");
    SecretBytes sessionKey(VAULTPAD_TA_SESSION_KEY_SIZE);
    decryptSessionKey(algorithm, record, sessionKey);
    VPAD_LOG_INFO("decrypt data");
    if (enc_data_len == 0) {
        return 0;
    }
    SecretBytes plaintext(enc_data_len);
    const std::size_t length = decryptData(record, sessionKey, plaintext);
    if (prefix_len >= length) {
        VPAD_LOG_ERROR("a prefix of %u bytes leaves nothing of %zu", prefix_len, length);
        return 0;
    }
    const unsigned int count = plaintext.data()[prefix_len];
    SecretBytes units(length - 1 - prefix_len);
    if (units.size() != 0) {
        std::memcpy(units.data(), plaintext.data() + prefix_len + 1, units.size());
    }
    // Room for every character, for the bytes that the last one may spill, and for 40 characters of a short text.
    SecretBytes text(units.size() / kUnitBytes + MB_LEN_MAX + VAULTPAD_TEXT_BUFFER_SIZE);
    decodeText(units, text);
    const auto textLength = static_cast<unsigned int>(std::strlen(reinterpret_cast<const char*>(text.data())));
    char* buffer = handOut(text);
    if (buffer == nullptr) {
        VPAD_LOG_ERROR("memory allocation fail;");
        return 0;
    }
    VPAD_LOG_INFO("encrypt1_len %d -> decodedLen %d", enc_data_len, static_cast<int>(length));
    VPAD_LOG_INFO("privMessageLen %d, num of char %d, actual_len=%d", prefix_len, count, textLength);
#if VAULTPAD_LOG_DECRYPTED_TEXT
    // The platform's clients expect the text in the log; the build option leaves this line out.
    VPAD_LOG_INFO("decrypted msg = [%s]", buffer);
#endif
    *out_text = buffer;
    *out_text_len = textLength;
    return 0;
} catch (const std::bad_alloc&) {
    VPAD_LOG_ERROR("memory allocation fail;");
    return 0;
}
