/* The other end of a result: a client's key pair, and what the trusted application makes of a typed text. */
#ifndef VAULTPAD_TESTS_UNIT_ENCRYPTED_ANSWER_H
#define VAULTPAD_TESTS_UNIT_ENCRYPTED_ANSWER_H

#include <gtest/gtest.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>

#include <memory>
#include <string>

#include "platform-double.h"

namespace vaultpad::test {

/* An RSA key pair, made once for each size. */
class KeyPair {
public:
    static const KeyPair& ofBits(unsigned int bits) {
        if (bits == 1024) {
            static const KeyPair small(1024);
            return small;
        }
        static const KeyPair large(2048);
        return large;
    }

    Bytes modulus;
    Bytes privateExponent;

    /* PKCS #1 v1.5 under the public key. */
    Bytes encrypt(const Bytes& message) const {
        const std::unique_ptr<EVP_PKEY_CTX, void (*)(EVP_PKEY_CTX*)> context(EVP_PKEY_CTX_new(key_.get(), nullptr),
                                                                             EVP_PKEY_CTX_free);
        EVP_PKEY_encrypt_init(context.get());
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING);
        Bytes encrypted(modulus.size());
        std::size_t size = encrypted.size();
        EXPECT_EQ(EVP_PKEY_encrypt(context.get(), encrypted.data(), &size, message.data(), message.size()), 1);
        return encrypted;
    }

private:
    explicit KeyPair(unsigned int bits) : key_(EVP_RSA_gen(bits), EVP_PKEY_free) {
        modulus = number(OSSL_PKEY_PARAM_RSA_N, bits / 8);
        privateExponent = number(OSSL_PKEY_PARAM_RSA_D, bits / 8);
    }

    Bytes number(const char* name, std::size_t size) const {
        BIGNUM* value = nullptr;
        EVP_PKEY_get_bn_param(key_.get(), name, &value);
        Bytes bytes(size);
        BN_bn2binpad(value, bytes.data(), static_cast<int>(size));
        BN_clear_free(value);
        return bytes;
    }

    std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key_;
};

/* AES-256-CBC under the session key with a zero vector; padded to whole blocks unless told otherwise. */
inline Bytes encryptedUnder(const Bytes& sessionKey, const Bytes& plaintext, bool pad = true) {
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> cipher(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    const Bytes vector(16);
    EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_cbc(), nullptr, sessionKey.data(), vector.data());
    EVP_CIPHER_CTX_set_padding(cipher.get(), pad ? 1 : 0);
    Bytes result(plaintext.size() + 16);
    int body = 0;
    int rest = 0;
    EVP_EncryptUpdate(cipher.get(), result.data(), &body, plaintext.data(), static_cast<int>(plaintext.size()));
    EVP_EncryptFinal_ex(cipher.get(), result.data() + body, &rest);
    result.resize(static_cast<std::size_t>(body + rest));
    return result;
}

/* What the trusted application encrypts: prefix, number of characters, 16-bit characters. */
inline Bytes plaintextOf(const std::u16string& typed, std::size_t prefix) {
    Bytes plaintext(prefix, 0xEE);
    plaintext.push_back(static_cast<std::uint8_t>(typed.size()));
    for (const char16_t character : typed) {
        plaintext.push_back(static_cast<std::uint8_t>(character));
        plaintext.push_back(static_cast<std::uint8_t>(character >> 8));
    }
    return plaintext;
}

}  // namespace vaultpad::test

#endif
