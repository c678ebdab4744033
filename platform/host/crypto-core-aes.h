/* AES-256-CBC decryption with PKCS #7 padding. */
#ifndef VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_AES_H
#define VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_AES_H

#include <openssl/evp.h>

#include <cstdint>
#include <memory>

#include "crypto-core-cipher.h"

namespace vaultpad::host {

/*
 * init, any number of updates, final; then init again. A step out of order fails. A failed init or final ends the
 * decryption; an update that is refused for want of room leaves it as it was.
 */
class AesDecryption : public CryptoCipher {
public:
    int init(int mode, int padding, CryptoInput key, const uint8_t* iv) override;

    /* Keeps the last block back until more comes: it may be the one with the padding. */
    int update(CryptoInput in, CryptoOutput& out) override;

    int final(CryptoInput in, CryptoOutput& out) override;

private:
    struct ContextDelete {
        void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); } /* wipes the key, too */
    };

    uint64_t produced() const;

    std::unique_ptr<EVP_CIPHER_CTX, ContextDelete> context_; /* null: not started */
    uint64_t fed_ = 0;                                       /* bytes so far */
};

}  // namespace vaultpad::host

#endif
