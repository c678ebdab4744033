/* A client that decrypts what a trusted application has encrypted for it. */
#ifndef VAULTPAD_TESTS_UNIT_DECRYPTION_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_DECRYPTION_FIXTURE_H

#include <vaultpad/vaultpad.h>

#include "encrypted-answer.h"
#include "platform-test.h"

namespace vaultpad::test {

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

    Bytes encrypted(const Bytes& plaintext, bool pad = true) const {
        return encryptedUnder(sessionKey, plaintext, pad);
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
