// The decryption of a result: any lengths and bytes that the working record holds, and any plaintext under a good key.
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <vaultpad/vaultpad.h>

#include <cstring>
#include <memory>

#include "fuzzer.h"

using vaultpad::fuzz::Input;
using vaultpad::fuzz::require;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kKeySize = 128;
constexpr std::size_t kSessionKeySize = 32;
constexpr std::size_t kCipherBlock = 16;
constexpr std::size_t kDataMax = 512;

// From each field to the end of the record: beyond it the call ends the process, as it must.
constexpr std::size_t kEncKeyRoom = sizeof(AppResult) - offsetof(AppResult, enc_key);
constexpr std::size_t kEncDataRoom = sizeof(AppResult) - offsetof(AppResult, enc_data);
constexpr std::size_t kModulusRoom = sizeof(AppResult) - offsetof(AppResult, rsa_modulus);
constexpr std::size_t kExponentRoom = sizeof(AppResult) - offsetof(AppResult, rsa_private_exponent);

struct Arguments {
    Bytes modulus;
    Bytes exponent;
    unsigned int prefix = 0;
    Bytes key;
    Bytes data;
};

unsigned int length(const Bytes& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

void decrypt(const Arguments& arguments) {
    char* text = nullptr;
    unsigned int size = 0;
    require(CsapiVPADdecryptWithRSAKeyPair(arguments.modulus.data(), length(arguments.modulus),
                                           arguments.exponent.data(), length(arguments.exponent), arguments.prefix,
                                           arguments.key.data(), length(arguments.key), arguments.data.data(),
                                           length(arguments.data), &text, &size) == 0);
    require(text != nullptr || size == 0);
    if (text != nullptr) {
        require(std::strlen(text) <= 40);
    }
    CsapiVPADfreemem(text);
}

struct KeyPair {
    Bytes modulus = Bytes(kKeySize);
    Bytes exponent = Bytes(kKeySize);
    Bytes encryptedSessionKey = Bytes(kKeySize); /* all of its bytes are 0x42 */

    KeyPair() {
        const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(EVP_RSA_gen(8 * kKeySize), EVP_PKEY_free);
        number(key.get(), OSSL_PKEY_PARAM_RSA_N, modulus);
        number(key.get(), OSSL_PKEY_PARAM_RSA_D, exponent);
        const std::unique_ptr<EVP_PKEY_CTX, void (*)(EVP_PKEY_CTX*)> context(EVP_PKEY_CTX_new(key.get(), nullptr),
                                                                             EVP_PKEY_CTX_free);
        const Bytes sessionKey(kSessionKeySize, 0x42);
        std::size_t size = kKeySize;
        require(EVP_PKEY_encrypt_init(context.get()) == 1 &&
                EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING) == 1 &&
                EVP_PKEY_encrypt(context.get(), encryptedSessionKey.data(), &size, sessionKey.data(),
                                 sessionKey.size()) == 1);
    }

private:
    static void number(const EVP_PKEY* key, const char* name, Bytes& bytes) {
        BIGNUM* value = nullptr;
        require(EVP_PKEY_get_bn_param(key, name, &value) == 1);
        BN_bn2binpad(value, bytes.data(), static_cast<int>(bytes.size()));
        BN_clear_free(value);
    }
};

Bytes encrypted(const Bytes& plaintext) {
    const std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)> cipher(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    const Bytes sessionKey(kSessionKeySize, 0x42);
    const Bytes vector(kCipherBlock);
    Bytes result(plaintext.size() + kCipherBlock);
    int body = 0;
    int rest = 0;
    require(EVP_EncryptInit_ex(cipher.get(), EVP_aes_256_cbc(), nullptr, sessionKey.data(), vector.data()) == 1 &&
            EVP_EncryptUpdate(cipher.get(), result.data(), &body, plaintext.data(),
                              static_cast<int>(plaintext.size())) == 1 &&
            EVP_EncryptFinal_ex(cipher.get(), result.data() + body, &rest) == 1);
    result.resize(static_cast<std::size_t>(body + rest));
    return result;
}

Arguments anyArguments(Input& input) {
    Arguments result;
    result.prefix = input.word();
    const std::size_t modulus = input.byte() % 3;
    result.modulus = input.bytes(modulus == 0 ? input.shortWord() % kModulusRoom : modulus * kKeySize);
    result.exponent = input.bytes(input.shortWord() % kExponentRoom);
    result.key = input.bytes(input.shortWord() % kEncKeyRoom);
    result.data = input.bytes(input.shortWord() % kEncDataRoom);
    return result;
}

Arguments goodArguments(Input& input) {
    static const KeyPair pair;
    Arguments result;
    result.modulus = pair.modulus;
    result.exponent = pair.exponent;
    result.key = pair.encryptedSessionKey;
    result.prefix = input.byte();
    // 1 in 4 is not padded, so that the padding that comes out is the input's.
    const bool bare = input.byte() % 4 == 0;
    Bytes plaintext = input.bytes(kDataMax - kCipherBlock);
    result.data = encrypted(plaintext);
    if (bare) {
        result.data.resize(result.data.size() - kCipherBlock);
    }
    return result;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The platform's log would be most of the work.
    static const int quiet = setenv("VAULTPAD_TELEVISION", VAULTPAD_QUIET_TELEVISION, 1);
    require(quiet == 0);
    Input input(data, size);
    const bool good = input.byte() % 2 == 1;
    decrypt(good ? goodArguments(input) : anyArguments(input));
    return 0;
}
