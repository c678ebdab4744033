/* RSA decryption with PKCS #1 v1.5 padding, from modulus and private exponent alone. */
#ifndef VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_RSA_H
#define VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_RSA_H

#include <openssl/bn.h>

#include <cstdint>
#include <memory>

#include "crypto-core-cipher.h"

namespace vaultpad::host {

class RsaDecryption : public CryptoCipher {
public:
    /* modulusSize: bytes that modulus and input must have. */
    explicit RsaDecryption(uint32_t modulusSize) : modulusSize_(modulusSize) {}

    /* Replaces the key pair; on failure there is none. The public exponent is not needed. */
    int setKeyPair(int padding, CryptoInput modulus, CryptoInput publicExponent, CryptoInput privateExponent) override;

    int decrypt(CryptoInput in, CryptoOutput& out) override;

private:
    struct NumberDelete {
        void operator()(BIGNUM* number) const { BN_clear_free(number); }
    };
    using Number = std::unique_ptr<BIGNUM, NumberDelete>;

    const uint32_t modulusSize_;
    Number modulus_; /* null: no key pair; the same for the exponent */
    Number privateExponent_;
};

}  // namespace vaultpad::host

#endif
