/* One algorithm's state behind a CryptoCore container. */
#ifndef VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_CIPHER_H
#define VAULTPAD_PLATFORM_HOST_CRYPTO_CORE_CIPHER_H

#include <openssl/err.h>

#include <cstdint>

#include "call-guard.h"

namespace vaultpad::host {

/* Bytes that come in; data may be null when size is 0. */
struct CryptoInput {
    const uint8_t* data;
    uint32_t size;

    bool valid() const { return data != nullptr || size == 0; }
};

/* Room for bytes that go out, and how many were written; nothing counts as written until an operation succeeds. */
struct CryptoOutput {
    uint8_t* data;
    uint32_t room;
    uint32_t written;
};

/* Operations return 0 on success. Those that an algorithm does not have fail. */
class CryptoCipher {
public:
    CryptoCipher() = default;
    virtual ~CryptoCipher() = default;
    CryptoCipher(const CryptoCipher&) = delete;
    CryptoCipher& operator=(const CryptoCipher&) = delete;

    virtual int init(int /*mode*/, int /*padding*/, CryptoInput /*key*/, const uint8_t* /*iv*/) { return kFailure; }
    virtual int update(CryptoInput /*in*/, CryptoOutput& /*out*/) { return kFailure; }
    virtual int final(CryptoInput /*in*/, CryptoOutput& /*out*/) { return kFailure; }
    virtual int setKeyPair(int /*padding*/, CryptoInput /*modulus*/, CryptoInput /*publicExponent*/,
                           CryptoInput /*privateExponent*/) {
        return kFailure;
    }
    virtual int decrypt(CryptoInput /*in*/, CryptoOutput& /*out*/) { return kFailure; }
};

/* Takes back what OpenSSL put into its error queue: the queue belongs to the client's own use of OpenSSL. */
class OpensslErrorGuard {
public:
    OpensslErrorGuard() { ERR_set_mark(); }
    ~OpensslErrorGuard() { ERR_pop_to_mark(); }
    OpensslErrorGuard(const OpensslErrorGuard&) = delete;
    OpensslErrorGuard& operator=(const OpensslErrorGuard&) = delete;
};

}  // namespace vaultpad::host

#endif
