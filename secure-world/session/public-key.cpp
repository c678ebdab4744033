#include "session/public-key.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/param_build.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <stdexcept>

#include "session/refusal.h"

namespace vaultpad::secureworld {

namespace {

constexpr std::size_t kModulusSize1024 = 128;
constexpr std::size_t kModulusSize2048 = 256;
constexpr std::uint64_t kExponentMin = 3;

struct Deleter {
    void operator()(BIGNUM* number) const { BN_free(number); }
    void operator()(OSSL_PARAM_BLD* builder) const { OSSL_PARAM_BLD_free(builder); }
    void operator()(OSSL_PARAM* parameters) const { OSSL_PARAM_free(parameters); }
    void operator()(EVP_PKEY_CTX* context) const { EVP_PKEY_CTX_free(context); }
    void operator()(EVP_ASYM_CIPHER* cipher) const { EVP_ASYM_CIPHER_free(cipher); }
    void operator()(EVP_CIPHER* cipher) const { EVP_CIPHER_free(cipher); }
};

template <typename Type>
using Owned = std::unique_ptr<Type, Deleter>;

void check(const RequestBytes& modulus, const RequestBytes& exponent) {
    if (modulus.size != kModulusSize1024 && modulus.size != kModulusSize2048) {
        throw Refusal("the modulus has " + std::to_string(modulus.size) + " bytes instead of 128 or 256");
    }
    if ((*modulus.begin() & 0x80) == 0 || (modulus.end()[-1] & 1) == 0) {
        throw Refusal("the modulus is even or shorter than its bytes");
    }
    if (exponent.size == 0 || exponent.size > PublicKey::kExponentSizeMax) {
        throw Refusal("the public exponent has " + std::to_string(exponent.size) + " bytes instead of 1 to 8");
    }
    std::uint64_t value = 0;
    for (const std::uint8_t byte : exponent) {
        value = value << 8 | byte;
    }
    if (value < kExponentMin || (value & 1) == 0) {
        throw Refusal("the public exponent is even or less than 3");
    }
}

Owned<BIGNUM> numberOf(const RequestBytes& bytes) {
    return Owned<BIGNUM>(BN_bin2bn(bytes.begin(), static_cast<int>(bytes.size), nullptr));
}

EVP_PKEY* makeKey(const RequestBytes& modulus, const RequestBytes& exponent) {
    const Owned<BIGNUM> n = numberOf(modulus);
    const Owned<BIGNUM> e = numberOf(exponent);
    const Owned<OSSL_PARAM_BLD> builder(OSSL_PARAM_BLD_new());
    if (!n || !e || !builder || OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_N, n.get()) != 1 ||
        OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_E, e.get()) != 1) {
        return nullptr;
    }
    const Owned<OSSL_PARAM> parameters(OSSL_PARAM_BLD_to_param(builder.get()));
    const Owned<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY* key = nullptr;
    if (!parameters || !context || EVP_PKEY_fromdata_init(context.get()) != 1 ||
        EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get()) != 1) {
        return nullptr;
    }
    return key;
}

RequestBytes oddNumber(std::size_t size) {
    const std::shared_ptr<std::uint8_t[]> bytes(new std::uint8_t[size]);
    std::fill_n(bytes.get(), size, std::uint8_t{0xff});
    return {bytes, size};
}

}  // namespace

void loadCryptography() {
    OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
    // The library remembers what was loaded. What fails here fails again, with its reason, when it is needed.
    EVP_PKEY_free(makeKey(oddNumber(kModulusSize1024), oddNumber(1)));
    const Owned<EVP_ASYM_CIPHER> keyCipher(EVP_ASYM_CIPHER_fetch(nullptr, "RSA", nullptr));
    const Owned<EVP_CIPHER> textCipher(EVP_CIPHER_fetch(nullptr, "AES-256-CBC", nullptr));
}

PublicKey::PublicKey(const RequestBytes& modulus, const RequestBytes& exponent, const RequestBytes& prefix) {
    check(modulus, exponent);
    if (prefix.size > kPrefixSizeMax) {
        throw Refusal("the prefix has more than " + std::to_string(kPrefixSizeMax) + " bytes");
    }
    key_.reset(makeKey(modulus, exponent), EVP_PKEY_free);
    if (!key_) {
        throw Refusal("the cryptographic library does not take the public key");
    }
    prefix_.assign(prefix.begin(), prefix.end());
}

std::vector<std::uint8_t> PublicKey::encrypt(const std::uint8_t* data, std::size_t size) const {
    const Owned<EVP_PKEY_CTX> context(EVP_PKEY_CTX_new_from_pkey(nullptr, key_.get(), nullptr));
    std::vector<std::uint8_t> result(static_cast<std::size_t>(EVP_PKEY_get_size(key_.get())));
    std::size_t length = result.size();
    if (!context || EVP_PKEY_encrypt_init(context.get()) != 1 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) != 1 ||
        EVP_PKEY_encrypt(context.get(), result.data(), &length, data, size) != 1) {
        throw std::runtime_error("the session key cannot be encrypted for the client");
    }
    result.resize(length);
    return result;
}

}  // namespace vaultpad::secureworld
