/* The client's RSA key pair, in the form that the library takes. */
#ifndef VAULTPAD_DEMO_RSA_KEY_PAIR_H
#define VAULTPAD_DEMO_RSA_KEY_PAIR_H

#include <string>
#include <vector>

namespace vaultpad_demo {

/* Big-endian numbers. The private exponent is wiped when the pair goes. */
struct RsaKeyPair {
    std::vector<unsigned char> modulus;
    std::vector<unsigned char> publicExponent;
    std::vector<unsigned char> privateExponent;

    RsaKeyPair() = default;
    ~RsaKeyPair();
    RsaKeyPair(const RsaKeyPair&) = delete;
    RsaKeyPair& operator=(const RsaKeyPair&) = delete;
    RsaKeyPair(RsaKeyPair&&) = default;
    RsaKeyPair& operator=(RsaKeyPair&&) = delete;
};

/* Makes a new key pair. Throws std::runtime_error. */
RsaKeyPair generateRsaKeyPair(unsigned int bits);

/* Reads the key pair from a PEM file of 1024 or 2048 bits, without a passphrase. Throws std::runtime_error. */
RsaKeyPair readRsaKeyPair(const std::string& path);

}  // namespace vaultpad_demo

#endif
