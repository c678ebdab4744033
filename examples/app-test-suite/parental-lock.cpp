#include "parental-lock.h"

#include <openssl/crypto.h>
#include <vaultpad/vaultpad.h>

#include <cstring>
#include <stdexcept>
#include <utility>

ParentalLock::ParentalLock(std::string pin) : pin_(std::move(pin)) {
    if (rsa_key_make(&key_) != 0) {
        throw std::runtime_error("no RSA key");
    }
}

ParentalLock::~ParentalLock() {
    rsa_key_wipe(&key_);
}

Answer ParentalLock::ask(const KeySource& nextKey) {
    const int digits = static_cast<int>(pin_.size());
    if (CsapiVPADcreate(VAULTPAD_TYPE_PINPAD, digits, 0, 0, key_.public_blob, RSA_KEY_BYTES, RSA_KEY_EXPONENT_BYTES,
                        nullptr, 0) != 0) {
        return Answer::NoPad;
    }
    bool taken = true;
    unsigned int closed = 0;
    while (taken && closed == 0) {
        const std::optional<std::string> name = nextKey();
        unsigned int value = 0;
        taken = name && CsapiVPADevent(name->c_str(), &value, &closed) == 0;
    }
    const bool completed = closed != 0 && vault_pad_check_enc_len() == 1;
    CsapiVPADclose();
    if (!completed) {
        return Answer::Left;
    }
    return typedIsPin() ? Answer::Unlocked : Answer::WrongPin;
}

bool ParentalLock::typedIsPin() const {
    void* sessionKey = nullptr;
    void* data = nullptr;
    unsigned int sessionKeyLength = 0;
    unsigned int dataLength = 0;
    unsigned int value = 0;
    CsapiVPADgetdata(&sessionKey, &sessionKeyLength, &data, &dataLength, &value);
    char* text = nullptr;
    unsigned int length = 0;
    CsapiVPADdecryptWithRSAKeyPair(key_.public_blob, RSA_KEY_BYTES, key_.private_exponent, RSA_KEY_BYTES, 0,
                                   static_cast<unsigned char*>(sessionKey), sessionKeyLength,
                                   static_cast<unsigned char*>(data), dataLength, &text, &length);
    CsapiVPADfreemem(sessionKey);
    CsapiVPADfreemem(data);
    const bool same =
        text != nullptr && std::strlen(text) == pin_.size() && CRYPTO_memcmp(text, pin_.data(), pin_.size()) == 0;
    if (text != nullptr) {
        OPENSSL_cleanse(text, VAULTPAD_TEXT_BUFFER_SIZE);
    }
    CsapiVPADfreemem(text);
    return same;
}
