// The client's RSA public key and the bytes that it wants in front of the typed text.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_PUBLIC_KEY_H
#define VAULTPAD_SECURE_WORLD_SESSION_PUBLIC_KEY_H

#include <openssl/evp.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "session/request-bytes.h"

namespace vaultpad::secureworld {

// Loads what the answer's encryption needs, which otherwise the first key waits for. No configuration file of the
// cryptographic library is read, now or later: a client could name its own in this process's environment.
void loadCryptography();

class PublicKey {
public:
    static constexpr std::size_t kExponentSizeMax = 8;
    static constexpr std::size_t kPrefixSizeMax = 256;

    // modulus and exponent are big-endian. Throws Refusal when they are no RSA key of 1024 or 2048 bits.
    PublicKey(const RequestBytes& modulus, const RequestBytes& exponent, const RequestBytes& prefix);

    const std::vector<std::uint8_t>& prefix() const { return prefix_; }

    // Encrypts with PKCS #1 v1.5 padding. Throws std::runtime_error when the cryptographic library fails.
    std::vector<std::uint8_t> encrypt(const std::uint8_t* data, std::size_t size) const;

private:
    std::shared_ptr<EVP_PKEY> key_;
    std::vector<std::uint8_t> prefix_;
};

}  // namespace vaultpad::secureworld

#endif
