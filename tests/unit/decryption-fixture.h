/* The other end of a result: a client's key pair, and what the trusted application makes of a typed text. */
#ifndef VAULTPAD_TESTS_UNIT_DECRYPTION_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_DECRYPTION_FIXTURE_H

#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <vaultpad/vaultpad.h>

#include <memory>
#include <string>

#include "platform-test.h"

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

class DecryptionTest : public PlatformTest {
protected:
    DecryptionTest() : sessionKey(32) {
        for (std::size_t i = 0; i < sessionKey.size(); ++i) {
            sessionKey[i] = static_cast<std::uint8_t>(i * 3 + 1);
        }
        use(KeyPair::ofBits(1024));
    }
    ~DecryptionTest() override {
        if (text != untouched()) {
            CsapiVPADfreemem(text);
        }
    }

    void use(const KeyPair& pair) {
        modulus = pair.modulus;
        privateExponent = pair.privateExponent;
        encryptedKey = pair.encrypt(sessionKey);
    }

    /* AES-256-CBC under the session key with a zero vector; padded to whole blocks unless told otherwise. */
    Bytes encrypted(const Bytes& plaintext, bool pad = true) const {
        const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> cipher(EVP_CIPHER_CTX_new(),
                                                                                EVP_CIPHER_CTX_free);
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
    static Bytes plaintextOf(const std::u16string& typed, std::size_t prefix) {
        Bytes plaintext(prefix, 0xEE);
        plaintext.push_back(static_cast<std::uint8_t>(typed.size()));
        for (const char16_t character : typed) {
            plaintext.push_back(static_cast<std::uint8_t>(character));
            plaintext.push_back(static_cast<std::uint8_t>(character >> 8));
        }
        return plaintext;
    }

    int decrypt(const Bytes& data, unsigned int prefix) {
        return CsapiVPADdecryptWithRSAKeyPair(modulus.data(), static_cast<unsigned int>(modulus.size()),
                                              privateExponent.data(), static_cast<unsigned int>(privateExponent.size()),
                                              prefix, encryptedKey.data(),
                                              static_cast<unsigned int>(encryptedKey.size()), data.data(),
                                              static_cast<unsigned int>(data.size()), &text, &length);
    }

    void expectNoText() const {
        EXPECT_EQ(text, nullptr);
        EXPECT_EQ(length, 0u);
    }

    Bytes sessionKey;
    Bytes modulus;
    Bytes privateExponent;
    Bytes encryptedKey;
    /* Neither null nor 0: every return has to set them. */
    char* text = untouched();
    unsigned int length = 99;

private:
    static char* untouched() {
        static char nothing;
        return &nothing;
    }
};

}  // namespace vaultpad::test

#endif
