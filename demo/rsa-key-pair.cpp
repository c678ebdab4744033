#include "rsa-key-pair.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace vaultpad_demo {

namespace {

// size 0: as many bytes as the number has.
std::vector<unsigned char> numberOf(const EVP_PKEY* key, const char* name, std::size_t size) {
    BIGNUM* raw = nullptr;
    if (EVP_PKEY_get_bn_param(key, name, &raw) != 1) {
        throw std::runtime_error(std::string("the RSA key has no ") + name);
    }
    const std::unique_ptr<BIGNUM, void (*)(BIGNUM*)> number(raw, BN_clear_free);
    std::vector<unsigned char> bytes(size != 0 ? size : static_cast<std::size_t>(BN_num_bytes(raw)));
    if (BN_bn2binpad(raw, bytes.data(), static_cast<int>(bytes.size())) < 0) {
        throw std::runtime_error(std::string("the RSA key's ") + name + " is too long");
    }
    return bytes;
}

RsaKeyPair pairOf(const EVP_PKEY* key, unsigned int bits) {
    RsaKeyPair pair;
    pair.modulus = numberOf(key, OSSL_PKEY_PARAM_RSA_N, bits / 8);
    pair.publicExponent = numberOf(key, OSSL_PKEY_PARAM_RSA_E, 0);
    pair.privateExponent = numberOf(key, OSSL_PKEY_PARAM_RSA_D, bits / 8);
    return pair;
}

}  // namespace

RsaKeyPair::~RsaKeyPair() {
    if (!privateExponent.empty()) {
        OPENSSL_cleanse(privateExponent.data(), privateExponent.size());
    }
}

RsaKeyPair generateRsaKeyPair(unsigned int bits) {
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(EVP_RSA_gen(bits), EVP_PKEY_free);
    if (!key) {
        throw std::runtime_error("cannot make an RSA key of " + std::to_string(bits) + " bits");
    }
    return pairOf(key.get(), bits);
}

RsaKeyPair readRsaKeyPair(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), std::fclose);
    if (!file) {
        throw std::runtime_error(path + ": " + std::strerror(errno));
    }
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(
        PEM_read_PrivateKey(file.get(), nullptr, nullptr, const_cast<char*>("")), EVP_PKEY_free);
    const int bits = key && EVP_PKEY_is_a(key.get(), "RSA") ? EVP_PKEY_get_bits(key.get()) : 0;
    if (bits != 1024 && bits != 2048) {
        throw std::runtime_error(path +
                                 ": no RSA private key of 1024 or 2048 bits in PEM; make one with openssl genrsa");
    }
    return pairOf(key.get(), static_cast<unsigned int>(bits));
}

}  // namespace vaultpad_demo
