// CryptoCore of the double: real RSA and AES, and operations that can be made to fail by their names.
#include <openssl/bn.h>
#include <openssl/evp.h>
#include <vaultpad-platform/crypto-core.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform-double.h"

using vaultpad::test::Bytes;
using vaultpad::test::platform;

namespace {

constexpr std::size_t kBlock = 16;

struct State {
    Bytes modulus;
    Bytes privateExponent;
    EVP_CIPHER_CTX* cipher = EVP_CIPHER_CTX_new();
};

State& stateOf(CryptoCoreContainer* container) {
    return *static_cast<State*>(container->state);
}

int init(CryptoCoreContainer* container, int mode, int padding, const uint8_t* key, uint32_t key_len,
         const uint8_t* iv) {
    const auto code = platform().call(
        "CryptoCore init", std::to_string(mode) + ", " + std::to_string(padding) + ", key of " +
                               std::to_string(key_len) + ", " +
                               (std::any_of(iv, iv + kBlock, [](uint8_t b) { return b; }) ? "vector" : "zero vector"));
    if (code) {
        return *code;
    }
    EVP_CIPHER_CTX* cipher = stateOf(container).cipher;
    const bool started = EVP_DecryptInit_ex(cipher, EVP_aes_256_cbc(), nullptr, key, iv) == 1;
    EVP_CIPHER_CTX_set_padding(cipher, 0);
    return started ? 0 : -1;
}

int decryptBlocks(CryptoCoreContainer* container, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len) {
    int written = 0;
    if (*out_len < in_len ||
        EVP_DecryptUpdate(stateOf(container).cipher, out, &written, in, static_cast<int>(in_len)) != 1) {
        return -1;
    }
    *out_len = static_cast<uint32_t>(written);
    return 0;
}

int update(CryptoCoreContainer* container, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len) {
    if (const auto code = platform().call("CryptoCore update", std::to_string(in_len))) {
        return *code;
    }
    return decryptBlocks(container, in, in_len, out, out_len);
}

int finish(CryptoCoreContainer* container, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len) {
    if (const auto code = platform().call("CryptoCore final", std::to_string(in_len))) {
        return *code;
    }
    if (const int result = decryptBlocks(container, in, in_len, out, out_len); result != 0) {
        return result;
    }
    const uint8_t padding = *out_len != 0 ? out[*out_len - 1] : 0;
    if (padding == 0 || padding > kBlock ||
        !std::all_of(out + *out_len - padding, out + *out_len, [padding](uint8_t byte) { return byte == padding; })) {
        return -2;
    }
    *out_len -= padding;
    return 0;
}

int setKeyPair(CryptoCoreContainer* container, int padding, const uint8_t* modulus, uint32_t modulus_len,
               const uint8_t* public_exponent, uint32_t public_exponent_len, const uint8_t* private_exponent,
               uint32_t private_exponent_len) {
    const std::string publicExponent =
        public_exponent == nullptr && public_exponent_len == 0 ? "no public exponent" : "public exponent";
    const auto code =
        platform().call("CryptoCore set_key_pair", std::to_string(padding) + ", modulus of " +
                                                       std::to_string(modulus_len) + ", " + publicExponent +
                                                       ", private exponent of " + std::to_string(private_exponent_len));
    if (code) {
        return *code;
    }
    stateOf(container).modulus.assign(modulus, modulus + modulus_len);
    stateOf(container).privateExponent.assign(private_exponent, private_exponent + private_exponent_len);
    return 0;
}

using Number = std::unique_ptr<BIGNUM, void (*)(BIGNUM*)>;

Number numberOf(const uint8_t* bytes, std::size_t size) {
    return {BN_bin2bn(bytes, static_cast<int>(size), nullptr), BN_free};
}

int decrypt(CryptoCoreContainer* container, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len) {
    if (const auto code = platform().call("CryptoCore decrypt", std::to_string(in_len))) {
        return *code;
    }
    const State& state = stateOf(container);
    const Number modulus = numberOf(state.modulus.data(), state.modulus.size());
    const Number exponent = numberOf(state.privateExponent.data(), state.privateExponent.size());
    const Number number = numberOf(in, in_len);
    const std::unique_ptr<BN_CTX, void (*)(BN_CTX*)> context(BN_CTX_new(), BN_CTX_free);
    if (BN_is_zero(modulus.get()) ||
        BN_mod_exp(number.get(), number.get(), exponent.get(), modulus.get(), context.get()) != 1) {
        return -1;
    }
    Bytes padded(state.modulus.size());
    BN_bn2binpad(number.get(), padded.data(), static_cast<int>(padded.size()));
    // 00 02, at least eight bytes that are not zero, 00, message.
    const auto end = padded.size() > 2 ? std::find(padded.begin() + 2, padded.end(), 0) : padded.end();
    if (end == padded.end() || padded[0] != 0 || padded[1] != 2 || end - padded.begin() < 10 ||
        padded.end() - end - 1 > static_cast<std::ptrdiff_t>(*out_len)) {
        return -2;
    }
    *out_len = static_cast<uint32_t>(std::copy(end + 1, padded.end(), out) - out);
    return 0;
}

constexpr CryptoCoreOperations kOperations = {init, update, finish, setKeyPair, decrypt};

}  // namespace

CryptoCoreContainer* create_CryptoCoreContainer(int algorithm) {
    if (platform().call("create_CryptoCoreContainer", std::to_string(algorithm))) {
        return nullptr;
    }
    return new CryptoCoreContainer{algorithm, &kOperations, new State};
}

void destroy_CryptoCoreContainer(CryptoCoreContainer* container) {
    platform().call("destroy_CryptoCoreContainer",
                    container != nullptr ? std::to_string(container->algorithm) : "null");
    if (container != nullptr) {
        EVP_CIPHER_CTX_free(stateOf(container).cipher);
        delete &stateOf(container);
        delete container;
    }
}
