#include "client.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>

#include <memory>
#include <sstream>
#include <stdexcept>

namespace {

constexpr char kPrefix[] = "prefix";
constexpr unsigned int kPrefixLength = sizeof(kPrefix) - 1;

std::vector<unsigned char> numberOf(const EVP_PKEY* key, const char* name) {
    BIGNUM* number = nullptr;
    if (EVP_PKEY_get_bn_param(key, name, &number) != 1) {
        throw std::runtime_error("the RSA key is incomplete");
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(BN_num_bytes(number)));
    BN_bn2bin(number, bytes.data());
    BN_clear_free(number);
    return bytes;
}

unsigned int lengthOf(const std::vector<unsigned char>& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

}  // namespace

Client::Client(unsigned int rsaBits) {
    const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(EVP_RSA_gen(rsaBits), EVP_PKEY_free);
    modulus_ = numberOf(key.get(), OSSL_PKEY_PARAM_RSA_N);
    publicExponent_ = numberOf(key.get(), OSSL_PKEY_PARAM_RSA_E);
    privateExponent_ = numberOf(key.get(), OSSL_PKEY_PARAM_RSA_D);
}

Client::~Client() {
    if (app != nullptr) {
        vault_pad_close();
    }
}

int Client::open(int type, int extra) {
    std::vector<unsigned char> blob = modulus_;
    blob.insert(blob.end(), publicExponent_.begin(), publicExponent_.end());
    std::string prefix = kPrefix;
    return CsapiVPADcreate(type, extra, 0, 0, blob.data(), lengthOf(modulus_), lengthOf(publicExponent_), prefix.data(),
                           kPrefixLength);
}

int Client::setPublicKey() {
    std::vector<unsigned char> blob = modulus_;
    blob.insert(blob.end(), publicExponent_.begin(), publicExponent_.end());
    std::string prefix = kPrefix;
    return vault_pad_params_set(0, 0, blob.data(), lengthOf(modulus_), lengthOf(publicExponent_), prefix.data(),
                                kPrefixLength);
}

EventResult Client::press(const std::string& key) {
    EventResult event{0, 0, 0};
    event.result = CsapiVPADevent(key.c_str(), &event.value, &event.closed);
    return event;
}

EventResult Client::pressAll(const std::string& keys) {
    EventResult event{0, 0, 0};
    std::istringstream words(keys);
    std::string word;
    while (std::getline(words, word, ',')) {
        const std::size_t star = word.find('*');
        const int times = star == std::string::npos ? 1 : std::stoi(word.substr(star + 1));
        for (int i = 0; i < times; ++i) {
            event = press(word.substr(0, star));
            if (event.result != 0 || event.closed != 0) {
                return event;
            }
        }
    }
    return event;
}

std::string Client::decrypt() const {
    void* key = nullptr;
    void* data = nullptr;
    unsigned int keyLength = 0;
    unsigned int dataLength = 0;
    unsigned int value = 0;
    CsapiVPADgetdata(&key, &keyLength, &data, &dataLength, &value);
    char* text = nullptr;
    unsigned int textLength = 0;
    CsapiVPADdecryptWithRSAKeyPair(modulus_.data(), lengthOf(modulus_), privateExponent_.data(),
                                   lengthOf(privateExponent_), kPrefixLength, static_cast<unsigned char*>(key),
                                   keyLength, static_cast<unsigned char*>(data), dataLength, &text, &textLength);
    const std::string result = text != nullptr ? text : "";
    CsapiVPADfreemem(key);
    CsapiVPADfreemem(data);
    CsapiVPADfreemem(text);
    return result;
}
