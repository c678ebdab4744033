#include "pad-client.h"

#include <openssl/crypto.h>

#include <cstring>
#include <stdexcept>
#include <vector>

namespace vaultpad_demo {

namespace {

// Stands before the typed text in the decrypted data: a client puts a nonce of its own here.
constexpr unsigned char kPrefix[] = {'d', 'e', 'm', 'o'};
constexpr unsigned int kPrefixLength = sizeof(kPrefix);
// Event types other than 3 are key presses.
constexpr int kKeyPressed = 2;

int typeCode(const Options& options) {
    return options.isKeyboard() ? VAULTPAD_TYPE_KEYBOARD : VAULTPAD_TYPE_PINPAD;
}

// The two parts of the public key, one behind the other.
std::vector<unsigned char> keyBlob(const RsaKeyPair& key) {
    std::vector<unsigned char> blob = key.modulus;
    blob.insert(blob.end(), key.publicExponent.begin(), key.publicExponent.end());
    return blob;
}

unsigned int lengthOf(const std::vector<unsigned char>& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

class CsapiClient : public PadClient {
public:
    ~CsapiClient() override { CsapiClient::close(); }

    void open(const Options& options, RsaKeyPair& key) override {
        std::vector<unsigned char> blob = keyBlob(key);
        unsigned char prefix[kPrefixLength];
        std::memcpy(prefix, kPrefix, kPrefixLength);
        if (CsapiVPADcreate(typeCode(options), options.pinLength, 0, 0, blob.data(), lengthOf(key.modulus),
                            lengthOf(key.publicExponent), prefix, kPrefixLength) != 0) {
            throw std::runtime_error("the pad could not be opened");
        }
    }

    bool press(const std::string& keyName) override {
        unsigned int value = 0;
        unsigned int closed = 0;
        if (CsapiVPADevent(keyName.c_str(), &value, &closed) != 0) {
            throw std::runtime_error("the trusted application did not take the key, or is gone");
        }
        return closed != 0;
    }

    void close() override {
        if (app != nullptr) {
            CsapiVPADclose();
        }
    }
};

class PlainClient : public PadClient {
public:
    ~PlainClient() override { PlainClient::close(); }

    void open(const Options& options, RsaKeyPair& key) override {
        if (vault_pad_session() != 1) {
            throw std::runtime_error("this client may not open a pad");
        }
        if (vault_pad_create(typeCode(options), options.pinLength) != 0) {
            throw std::runtime_error("the pad could not be opened");
        }
        std::vector<unsigned char> blob = keyBlob(key);
        unsigned char prefix[kPrefixLength];
        std::memcpy(prefix, kPrefix, kPrefixLength);
        if (vault_pad_params_set(0, 0, blob.data(), lengthOf(key.modulus), lengthOf(key.publicExponent), prefix,
                                 kPrefixLength) != 0) {
            throw std::runtime_error(
                "the pad did not start: the keys could not be grabbed, or the trusted application is gone");
        }
    }

    bool press(const std::string& keyName) override {
        const char* name = keyName.c_str();
        if (vault_pad_event(kKeyPressed, &name) != 0) {
            throw std::runtime_error("the trusted application did not take the key, or is gone");
        }
        return is_vault_pad_close() != 0;
    }

    void close() override {
        if (app != nullptr) {
            vault_pad_close();
        }
    }
};

}  // namespace

Outcome PadClient::collect(const RsaKeyPair& key) {
    Outcome outcome;
    void* encryptedKey = nullptr;
    void* encryptedData = nullptr;
    unsigned int value = 0;
    CsapiVPADgetdata(&encryptedKey, &outcome.encryptedKeyLength, &encryptedData, &outcome.encryptedDataLength, &value);
    char* text = nullptr;
    unsigned int textLength = 0;
    if (outcome.encryptedKeyLength != 0 && outcome.encryptedDataLength != 0) {
        CsapiVPADdecryptWithRSAKeyPair(
            key.modulus.data(), lengthOf(key.modulus), key.privateExponent.data(), lengthOf(key.privateExponent),
            kPrefixLength, static_cast<unsigned char*>(encryptedKey), outcome.encryptedKeyLength,
            static_cast<unsigned char*>(encryptedData), outcome.encryptedDataLength, &text, &textLength);
    }
    CsapiVPADfreemem(encryptedKey);
    CsapiVPADfreemem(encryptedData);
    if (text != nullptr) {
        outcome.completed = true;
        outcome.text = text;
        OPENSSL_cleanse(text, VAULTPAD_TEXT_BUFFER_SIZE);
        CsapiVPADfreemem(text);
    }
    return outcome;
}

std::unique_ptr<PadClient> makePadClient(const std::string& family) {
    if (family == "plain") {
        return std::make_unique<PlainClient>();
    }
    return std::make_unique<CsapiClient>();
}

}  // namespace vaultpad_demo
