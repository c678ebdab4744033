// The client's side of the cryptography: a key pair, and the way back to the plaintext.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_RSA_CLIENT_H
#define VAULTPAD_TESTS_SECURE_WORLD_RSA_CLIENT_H

#include <openssl/evp.h>

#include <memory>
#include <string>

#include "ta-client.h"

namespace vaultpad::secureworld {

class RsaClient {
public:
    explicit RsaClient(unsigned bits);

    Bytes modulus() const;
    Bytes exponent() const;

    // The contents of event 3.
    Bytes publicKeyRequest(const Bytes& prefix = {}) const;

    // Decrypts an answer: the whole plaintext, empty when anything about it is wrong.
    Bytes decrypt(const KeyAnswer& answer) const;

    // The session key of an answer.
    Bytes sessionKey(const KeyAnswer& answer) const;

private:
    std::shared_ptr<EVP_PKEY> key_;
};

// The plaintext that a text of ASCII characters gives.
Bytes plaintextOf(const std::string& text, const Bytes& prefix = {});

}  // namespace vaultpad::secureworld

#endif
