/* RSA containers, against keys and blocks that OpenSSL makes here. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <vaultpad-platform/crypto-core.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kPadding = VAULTPAD_CRYPTO_PADDING_PKCS1_V15;

struct Delete {
    void operator()(CryptoCoreContainer* container) const { destroy_CryptoCoreContainer(container); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(EVP_PKEY_CTX* context) const { EVP_PKEY_CTX_free(context); }
    void operator()(BIGNUM* number) const { BN_free(number); }
};
using Container = std::unique_ptr<CryptoCoreContainer, Delete>;
using Key = std::unique_ptr<EVP_PKEY, Delete>;

Bytes number(const Key& key, const char* name) {
    BIGNUM* value = nullptr;
    EXPECT_EQ(EVP_PKEY_get_bn_param(key.get(), name, &value), 1);
    const std::unique_ptr<BIGNUM, Delete> owner(value);
    Bytes bytes(static_cast<std::size_t>(BN_num_bytes(value)));
    BN_bn2bin(value, bytes.data());
    return bytes;
}

/* Encrypts with the public key; with the padding RSA_NO_PADDING the text is the whole block. */
Bytes encrypt(const Key& key, const Bytes& text, int padding) {
    const std::unique_ptr<EVP_PKEY_CTX, Delete> context(EVP_PKEY_CTX_new(key.get(), nullptr));
    Bytes out(static_cast<std::size_t>(EVP_PKEY_get_size(key.get())));
    std::size_t length = out.size();
    EXPECT_EQ(EVP_PKEY_encrypt_init(context.get()), 1);
    EXPECT_EQ(EVP_PKEY_CTX_set_rsa_padding(context.get(), padding), 1);
    EXPECT_EQ(EVP_PKEY_encrypt(context.get(), out.data(), &length, text.data(), text.size()), 1);
    return out;
}

/* Adds two numbers. */
Bytes add(const Bytes& left, const Bytes& right) {
    const std::unique_ptr<BIGNUM, Delete> sum(BN_bin2bn(left.data(), static_cast<int>(left.size()), nullptr));
    const std::unique_ptr<BIGNUM, Delete> other(BN_bin2bn(right.data(), static_cast<int>(right.size()), nullptr));
    EXPECT_EQ(BN_add(sum.get(), sum.get(), other.get()), 1);
    Bytes bytes(static_cast<std::size_t>(BN_num_bytes(sum.get())));
    BN_bn2bin(sum.get(), bytes.data());
    return bytes;
}

/* The parameter is the key's size in bits. */
class RsaTest : public testing::TestWithParam<unsigned> {
protected:
    static Key makeKey(unsigned bits) { return Key(EVP_RSA_gen(bits)); }

    int setKeyPair(const Bytes& modulus, const Bytes& exponent, int padding = kPadding) {
        return rsa_->operations->set_key_pair(rsa_.get(), padding, modulus.data(),
                                              static_cast<uint32_t>(modulus.size()), nullptr, 0, exponent.data(),
                                              static_cast<uint32_t>(exponent.size()));
    }

    /* On return, out has what was written. */
    int decrypt(const Bytes& in, Bytes& out) {
        uint32_t length = static_cast<uint32_t>(out.size());
        const int result =
            rsa_->operations->decrypt(rsa_.get(), in.data(), static_cast<uint32_t>(in.size()), out.data(), &length);
        EXPECT_LE(length, out.size());
        EXPECT_TRUE(result == 0 || length == 0);
        out.resize(length);
        return result;
    }

    const uint32_t size_ = GetParam() / 8; /* bytes */
    const Key key_ = makeKey(GetParam());
    const Bytes modulus_ = number(key_, OSSL_PKEY_PARAM_RSA_N);
    const Bytes exponent_ = number(key_, OSSL_PKEY_PARAM_RSA_D);
    Container rsa_{
        create_CryptoCoreContainer(GetParam() == 1024 ? VAULTPAD_CRYPTO_RSA_1024 : VAULTPAD_CRYPTO_RSA_2048)};
};

INSTANTIATE_TEST_SUITE_P(Bits, RsaTest, testing::Values(1024u, 2048u));

TEST_P(RsaTest, DecryptsWhatThePublicKeyEncrypted) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    for (const std::size_t length : {std::size_t{1}, std::size_t{32}, std::size_t{size_ - 11}}) {
        const Bytes text(length, 0x5A);
        Bytes out(length); /* exactly enough */
        EXPECT_EQ(decrypt(encrypt(key_, text, RSA_PKCS1_PADDING), out), 0) << length;
        EXPECT_EQ(out, text);
    }
}

TEST_P(RsaTest, TakesAnExponentWithLeadingZeros) {
    Bytes padded(8, 0);
    padded.insert(padded.end(), exponent_.begin(), exponent_.end());
    ASSERT_EQ(setKeyPair(modulus_, padded), 0);
    Bytes out(size_);
    EXPECT_EQ(decrypt(encrypt(key_, {1, 2, 3}, RSA_PKCS1_PADDING), out), 0);
    EXPECT_EQ(out, (Bytes{1, 2, 3}));
}

TEST_P(RsaTest, RefusesARoomThatIsTooSmallAndWritesNothingBehindIt) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    const Bytes cipher = encrypt(key_, Bytes(33, 0x5A), RSA_PKCS1_PADDING);
    Bytes out(64, 0xEE);
    uint32_t length = 32;
    EXPECT_NE(rsa_->operations->decrypt(rsa_.get(), cipher.data(), size_, out.data(), &length), 0);
    EXPECT_EQ(length, 0u);
    EXPECT_THAT(Bytes(out.begin() + 32, out.end()), testing::Each(0xEE));
}

TEST_P(RsaTest, RefusesBlocksWithoutProperPadding) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    Bytes good(size_, 0x77);
    good[0] = 0;
    good[1] = 2;
    good[20] = 0;
    Bytes out(size_);
    EXPECT_EQ(decrypt(encrypt(key_, good, RSA_NO_PADDING), out), 0);
    EXPECT_EQ(out, Bytes(size_ - 21, 0x77));
    const struct {
        std::size_t place;
        uint8_t value;
    } faults[] = {{0, 1}, {1, 1}, {1, 0}, {9, 0}, {20, 0x77}};
    for (const auto& fault : faults) {
        Bytes block = good;
        block[fault.place] = fault.value;
        out.resize(size_);
        EXPECT_NE(decrypt(encrypt(key_, block, RSA_NO_PADDING), out), 0) << fault.place;
    }
}

TEST_P(RsaTest, RefusesAnotherKeysBlock) {
    const Key other = makeKey(GetParam());
    ASSERT_EQ(setKeyPair(number(other, OSSL_PKEY_PARAM_RSA_N), number(other, OSSL_PKEY_PARAM_RSA_D)), 0);
    Bytes block(size_, 0x77);
    block[0] = 0;
    Bytes out(size_);
    EXPECT_NE(decrypt(encrypt(key_, block, RSA_NO_PADDING), out), 0);
}

TEST_P(RsaTest, RefusesInputOfAnotherLengthOrNotBelowTheModulus) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    const Bytes cipher = encrypt(key_, {1}, RSA_PKCS1_PADDING);
    for (const Bytes& bad :
         {Bytes(cipher.begin(), cipher.end() - 1), Bytes(size_ + 1, 0), modulus_, Bytes(size_, 0xFF)}) {
        Bytes out(size_);
        EXPECT_NE(decrypt(bad, out), 0);
    }
}

TEST_P(RsaTest, RefusesAValidBlockToWhichTheModulusWasAdded) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    Bytes sum;
    while (sum.size() != size_) { /* until the sum needs no byte more; each try has a fair chance */
        sum = add(encrypt(key_, {1}, RSA_PKCS1_PADDING), modulus_);
    }
    Bytes out(size_);
    EXPECT_NE(decrypt(sum, out), 0);
}

TEST_P(RsaTest, RefusesKeysThatDoNotFitTheAlgorithm) {
    Bytes leadingZero = modulus_;
    leadingZero[0] = 0;
    Bytes even = modulus_;
    even.back() &= 0xFE;
    Bytes longer = modulus_;
    longer.push_back(1);
    for (const Bytes& bad : {leadingZero, even, longer, Bytes(192, 0xFF), Bytes(1, 3), Bytes()}) {
        EXPECT_NE(setKeyPair(bad, exponent_), 0) << bad.size();
    }
    EXPECT_NE(setKeyPair(modulus_, exponent_, kPadding + 1), 0);
    EXPECT_NE(setKeyPair(modulus_, Bytes()), 0);
    EXPECT_NE(setKeyPair(modulus_, Bytes(size_, 0)), 0);
    EXPECT_NE(setKeyPair(modulus_, modulus_), 0);
    EXPECT_NE(
        rsa_->operations->set_key_pair(rsa_.get(), kPadding, modulus_.data(), size_, nullptr, 3, exponent_.data(), 1),
        0);
}

TEST_P(RsaTest, DecryptsNothingWithoutAKeyPair) {
    const Bytes cipher = encrypt(key_, {1}, RSA_PKCS1_PADDING);
    Bytes out(size_);
    EXPECT_NE(decrypt(cipher, out), 0);
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    EXPECT_NE(setKeyPair(modulus_, exponent_, 0), 0);
    out.resize(size_);
    EXPECT_NE(decrypt(cipher, out), 0) << "a refused key pair takes the old one's place";
}

TEST_P(RsaTest, RefusesNullArguments) {
    ASSERT_EQ(setKeyPair(modulus_, exponent_), 0);
    const Bytes cipher = encrypt(key_, {1}, RSA_PKCS1_PADDING);
    uint8_t out[256];
    uint32_t length = sizeof out;
    EXPECT_NE(rsa_->operations->decrypt(rsa_.get(), cipher.data(), size_, out, nullptr), 0);
    EXPECT_NE(rsa_->operations->decrypt(rsa_.get(), nullptr, size_, out, &length), 0);
    length = sizeof out;
    EXPECT_NE(rsa_->operations->decrypt(rsa_.get(), cipher.data(), size_, nullptr, &length), 0);
    length = 0;
    EXPECT_NE(rsa_->operations->decrypt(rsa_.get(), cipher.data(), size_, out, &length), 0);
}

TEST_P(RsaTest, HasNoSymmetricOperations) {
    const Bytes key(32, 1);
    uint8_t out[64];
    uint32_t length = sizeof out;
    EXPECT_NE(rsa_->operations->init(rsa_.get(), VAULTPAD_CRYPTO_MODE_CBC, VAULTPAD_CRYPTO_PADDING_PKCS7, key.data(),
                                     32, key.data()),
              0);
    EXPECT_NE(rsa_->operations->update(rsa_.get(), key.data(), 16, out, &length), 0);
    length = sizeof out;
    EXPECT_NE(rsa_->operations->final(rsa_.get(), key.data(), 16, out, &length), 0);
    EXPECT_EQ(length, 0u);
}

}  // namespace
