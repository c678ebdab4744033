/* The padding check that runs in constant time is deprecated only in favour of interfaces that want a public exponent.
 */
#define OPENSSL_SUPPRESS_DEPRECATED

#include "crypto-core-rsa.h"

#include <openssl/crypto.h>
#include <openssl/rsa.h>
#include <vaultpad-platform/crypto-core.h>

#include <array>
#include <utility>

namespace vaultpad::host {

namespace {

constexpr uint32_t kModulusSizeMax = 256;
constexpr uint32_t kExponentSizeMax = 4096; /* bytes, leading zeros included */

struct ContextDelete {
    void operator()(BN_CTX* context) const { BN_CTX_free(context); }
    void operator()(BN_MONT_CTX* context) const { BN_MONT_CTX_free(context); }
};
using Context = std::unique_ptr<BN_CTX, ContextDelete>;
using Montgomery = std::unique_ptr<BN_MONT_CTX, ContextDelete>;

/* A padded message, wiped when it goes. */
struct Block {
    std::array<uint8_t, kModulusSizeMax> bytes;
    ~Block() { OPENSSL_cleanse(bytes.data(), bytes.size()); }
};

BIGNUM* toNumber(CryptoInput bytes) {
    return BN_bin2bn(bytes.data, static_cast<int>(bytes.size), nullptr);
}

}  // namespace

int RsaDecryption::setKeyPair(int padding, CryptoInput modulus, CryptoInput publicExponent,
                              CryptoInput privateExponent) {
    modulus_.reset();
    privateExponent_.reset();
    if (padding != VAULTPAD_CRYPTO_PADDING_PKCS1_V15 || modulus.data == nullptr || modulus.size != modulusSize_ ||
        !publicExponent.valid() || privateExponent.data == nullptr || privateExponent.size > kExponentSizeMax) {
        return kFailure;
    }
    Number n(toNumber(modulus));
    Number d(toNumber(privateExponent));
    if (!n || !d || BN_num_bytes(n.get()) != static_cast<int>(modulusSize_) || !BN_is_odd(n.get()) ||
        BN_is_zero(d.get()) || BN_cmp(d.get(), n.get()) >= 0) {
        return kFailure;
    }
    BN_set_flags(d.get(), BN_FLG_CONSTTIME);
    modulus_ = std::move(n);
    privateExponent_ = std::move(d);
    return 0;
}

int RsaDecryption::decrypt(CryptoInput in, CryptoOutput& out) {
    if (!modulus_ || in.data == nullptr || in.size != modulusSize_ || out.data == nullptr || out.room == 0) {
        return kFailure;
    }
    const Context context(BN_CTX_secure_new());
    const Montgomery montgomery(BN_MONT_CTX_new());
    const Number cipher(toNumber(in));
    const Number message(BN_new());
    Block block;
    if (!context || !montgomery || !cipher || !message || BN_cmp(cipher.get(), modulus_.get()) >= 0 ||
        BN_MONT_CTX_set(montgomery.get(), modulus_.get(), context.get()) != 1 ||
        BN_mod_exp_mont_consttime(message.get(), cipher.get(), privateExponent_.get(), modulus_.get(), context.get(),
                                  montgomery.get()) != 1 ||
        BN_bn2binpad(message.get(), block.bytes.data(), static_cast<int>(modulusSize_)) < 0) {
        return kFailure;
    }
    const uint32_t room = out.room < modulusSize_ ? out.room : modulusSize_;
    const int size = static_cast<int>(modulusSize_);
    const int length = RSA_padding_check_PKCS1_type_2(out.data, static_cast<int>(room), block.bytes.data(), size, size);
    if (length < 0) {
        return kFailure;
    }
    out.written = static_cast<uint32_t>(length);
    return 0;
}

}  // namespace vaultpad::host
