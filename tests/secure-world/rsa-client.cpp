#include "rsa-client.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/rsa.h>

#include <stdexcept>

namespace vaultpad::secureworld {

namespace {

Bytes numberOf(EVP_PKEY* key, const char* name) {
    BIGNUM* number = nullptr;
    if (EVP_PKEY_get_bn_param(key, name, &number) != 1) {
        throw std::runtime_error("no such part of the key");
    }
    Bytes bytes(static_cast<std::size_t>(BN_num_bytes(number)));
    BN_bn2bin(number, bytes.data());
    BN_free(number);
    return bytes;
}

}  // namespace

RsaClient::RsaClient(unsigned bits) : key_(EVP_RSA_gen(bits), EVP_PKEY_free) {
    if (!key_) {
        throw std::runtime_error("no RSA key");
    }
}

Bytes RsaClient::modulus() const {
    return numberOf(key_.get(), OSSL_PKEY_PARAM_RSA_N);
}

Bytes RsaClient::exponent() const {
    return numberOf(key_.get(), OSSL_PKEY_PARAM_RSA_E);
}

Bytes RsaClient::publicKeyRequest(const Bytes& prefix) const {
    return Writer()
        .word(11)
        .word(12)
        .word(static_cast<std::uint32_t>(modulus().size()))
        .word(static_cast<std::uint32_t>(exponent().size()))
        .blob(modulus())
        .blob(exponent())
        .word(static_cast<std::uint32_t>(prefix.size()))
        .blob(prefix)
        .bytes();
}

Bytes RsaClient::sessionKey(const KeyAnswer& answer) const {
    const std::unique_ptr<EVP_PKEY_CTX, decltype(&EVP_PKEY_CTX_free)> context(
        EVP_PKEY_CTX_new_from_pkey(nullptr, key_.get(), nullptr), EVP_PKEY_CTX_free);
    Bytes result(static_cast<std::size_t>(EVP_PKEY_get_size(key_.get())));
    std::size_t size = result.size();
    if (EVP_PKEY_decrypt_init(context.get()) != 1 ||
        EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) != 1 ||
        EVP_PKEY_decrypt(context.get(), result.data(), &size, answer.encryptedKey.data(), answer.encryptedKey.size()) !=
            1) {
        return {};
    }
    result.resize(size);
    return result;
}

Bytes RsaClient::decrypt(const KeyAnswer& answer) const {
    const Bytes key = sessionKey(answer);
    if (key.size() != 32) {
        return {};
    }
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                  EVP_CIPHER_CTX_free);
    const Bytes zeroVector(16, 0);
    Bytes result(answer.encryptedData.size());
    int body = 0;
    int tail = 0;
    if (EVP_DecryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, key.data(), zeroVector.data()) != 1 ||
        EVP_DecryptUpdate(context.get(), result.data(), &body, answer.encryptedData.data(),
                          static_cast<int>(answer.encryptedData.size())) != 1 ||
        EVP_DecryptFinal_ex(context.get(), result.data() + body, &tail) != 1) {
        return {};
    }
    result.resize(static_cast<std::size_t>(body + tail));
    return result;
}

Bytes plaintextOf(const std::string& text, const Bytes& prefix) {
    Bytes result = prefix;
    result.push_back(static_cast<std::uint8_t>(text.size()));
    for (const char c : text) {
        result.push_back(static_cast<std::uint8_t>(c));
        result.push_back(0);
    }
    return result;
}

}  // namespace vaultpad::secureworld
