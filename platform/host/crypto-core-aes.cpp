#include "crypto-core-aes.h"

#include <openssl/crypto.h>
#include <vaultpad-platform/crypto-core.h>

#include <cstring>
#include <limits>
#include <vector>

namespace vaultpad::host {

namespace {

constexpr uint32_t kKeySize = 32;
constexpr uint32_t kBlockSize = 16;
constexpr uint32_t kInputMax = std::numeric_limits<int>::max() - 2 * static_cast<int>(kBlockSize); /* OpenSSL: int */

/* How many bytes leave the decryption once fed bytes went in. */
uint64_t producedFrom(uint64_t fed) {
    return fed == 0 ? 0 : (fed - 1) / kBlockSize * kBlockSize;
}

/* Plaintext on its way, wiped when it goes. */
class Plaintext {
public:
    explicit Plaintext(std::size_t size) : bytes_(size) {}
    ~Plaintext() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }
    Plaintext(const Plaintext&) = delete;
    Plaintext& operator=(const Plaintext&) = delete;

    uint8_t* data() { return bytes_.data(); }

private:
    std::vector<uint8_t> bytes_;
};

}  // namespace

uint64_t AesDecryption::produced() const {
    return producedFrom(fed_);
}

int AesDecryption::init(int mode, int padding, CryptoInput key, const uint8_t* iv) {
    context_.reset();
    fed_ = 0;
    if (mode != VAULTPAD_CRYPTO_MODE_CBC || padding != VAULTPAD_CRYPTO_PADDING_PKCS7 || key.data == nullptr ||
        key.size != kKeySize || iv == nullptr) {
        return kFailure;
    }
    context_.reset(EVP_CIPHER_CTX_new());
    if (!context_ || EVP_DecryptInit_ex2(context_.get(), EVP_aes_256_cbc(), key.data, iv, nullptr) != 1) {
        context_.reset();
        return kFailure;
    }
    return 0;
}

int AesDecryption::update(CryptoInput in, CryptoOutput& out) {
    if (!context_ || !in.valid() || in.size > kInputMax) {
        return kFailure;
    }
    const uint64_t leaving = producedFrom(fed_ + in.size) - produced();
    if (leaving > out.room || (leaving > 0 && out.data == nullptr)) {
        return kFailure;
    }
    if (in.size == 0) {
        out.written = 0;
        return 0;
    }
    /* OpenSSL wants an address even when no block leaves. */
    uint8_t nothing[kBlockSize];
    int length = 0;
    uint8_t* const target = leaving == 0 ? nothing : out.data;
    if (EVP_DecryptUpdate(context_.get(), target, &length, in.data, static_cast<int>(in.size)) != 1) {
        context_.reset();
        return kFailure;
    }
    fed_ += in.size;
    out.written = static_cast<uint32_t>(length);
    return 0;
}

int AesDecryption::final(CryptoInput in, CryptoOutput& out) {
    const auto context = std::move(context_);
    if (!context || !in.valid() || in.size > kInputMax) {
        return kFailure;
    }
    /* How long the text is shows only behind the padding: it goes out when it is known to fit. */
    Plaintext text(in.size + 2 * std::size_t{kBlockSize});
    int body = 0;
    if (in.size > 0 && EVP_DecryptUpdate(context.get(), text.data(), &body, in.data, static_cast<int>(in.size)) != 1) {
        return kFailure;
    }
    int rest = 0;
    if (EVP_DecryptFinal_ex(context.get(), text.data() + body, &rest) != 1) {
        return kFailure;
    }
    const uint32_t length = static_cast<uint32_t>(body) + static_cast<uint32_t>(rest);
    if (length > out.room || (length > 0 && out.data == nullptr)) {
        return kFailure;
    }
    if (length > 0) {
        std::memcpy(out.data, text.data(), length);
    }
    out.written = length;
    return 0;
}

}  // namespace vaultpad::host
