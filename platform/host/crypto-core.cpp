#include <vaultpad-platform/crypto-core.h>

#include <memory>
#include <mutex>
#include <unordered_map>

#include "call-guard.h"
#include "crypto-core-aes.h"
#include "crypto-core-cipher.h"
#include "crypto-core-rsa.h"

namespace vaultpad::host {

namespace {

constexpr uint32_t kRsa1024Size = 128;
constexpr uint32_t kRsa2048Size = 256;

/* The live containers: clients hold their addresses, so a stale one is told by not being here. */
class Containers {
public:
    static Containers& instance() {
        static auto* const containers = new Containers; /* usable until the process is gone */
        return *containers;
    }

    CryptoCoreContainer* add(int algorithm, const CryptoCoreOperations* operations,
                             std::shared_ptr<CryptoCipher> cipher) {
        auto container = std::make_unique<CryptoCoreContainer>();
        *container = {algorithm, operations, cipher.get()};
        const std::lock_guard lock(mutex_);
        CryptoCoreContainer* const address = container.get();
        live_.emplace(address, Entry{std::move(container), std::move(cipher)});
        return address;
    }

    std::shared_ptr<CryptoCipher> find(const CryptoCoreContainer* container) {
        const std::lock_guard lock(mutex_);
        const auto found = live_.find(container);
        return found == live_.end() ? nullptr : found->second.cipher;
    }

    void remove(const CryptoCoreContainer* container) {
        const std::lock_guard lock(mutex_);
        live_.erase(container);
    }

private:
    struct Entry {
        std::unique_ptr<CryptoCoreContainer> container;
        std::shared_ptr<CryptoCipher> cipher;
    };

    std::mutex mutex_;
    std::unordered_map<const CryptoCoreContainer*, Entry> live_;
};

/* Runs an operation on the container's cipher. */
template <typename Operation>
int onCipher(const CryptoCoreContainer* container, Operation&& operation) noexcept {
    return orFailure(kFailure, [&]() {
        const std::shared_ptr<CryptoCipher> cipher = Containers::instance().find(container);
        const OpensslErrorGuard guard;
        return cipher ? operation(*cipher) : kFailure;
    });
}

/* The same for one that writes: *outLength says 0 bytes after every failure. */
template <typename Operation>
int onCipher(const CryptoCoreContainer* container, uint8_t* out, uint32_t* outLength, Operation&& operation) noexcept {
    if (outLength == nullptr) {
        return kFailure;
    }
    CryptoOutput output{out, *outLength, 0};
    const int result = onCipher(container, [&](CryptoCipher& cipher) { return operation(cipher, output); });
    *outLength = result == 0 ? output.written : 0;
    return result;
}

int init(CryptoCoreContainer* container, int mode, int padding, const uint8_t* key, uint32_t keyLength,
         const uint8_t* iv) {
    return onCipher(container, [&](CryptoCipher& cipher) { return cipher.init(mode, padding, {key, keyLength}, iv); });
}

int update(CryptoCoreContainer* container, const uint8_t* in, uint32_t inLength, uint8_t* out, uint32_t* outLength) {
    return onCipher(container, out, outLength, [&](CryptoCipher& cipher, CryptoOutput& output) {
        return cipher.update({in, inLength}, output);
    });
}

int final(CryptoCoreContainer* container, const uint8_t* in, uint32_t inLength, uint8_t* out, uint32_t* outLength) {
    return onCipher(container, out, outLength, [&](CryptoCipher& cipher, CryptoOutput& output) {
        return cipher.final({in, inLength}, output);
    });
}

int setKeyPair(CryptoCoreContainer* container, int padding, const uint8_t* modulus, uint32_t modulusLength,
               const uint8_t* publicExponent, uint32_t publicExponentLength, const uint8_t* privateExponent,
               uint32_t privateExponentLength) {
    return onCipher(container, [&](CryptoCipher& cipher) {
        return cipher.setKeyPair(padding, {modulus, modulusLength}, {publicExponent, publicExponentLength},
                                 {privateExponent, privateExponentLength});
    });
}

int decrypt(CryptoCoreContainer* container, const uint8_t* in, uint32_t inLength, uint8_t* out, uint32_t* outLength) {
    return onCipher(container, out, outLength, [&](CryptoCipher& cipher, CryptoOutput& output) {
        return cipher.decrypt({in, inLength}, output);
    });
}

constexpr CryptoCoreOperations kOperations = {init, update, final, setKeyPair, decrypt};

std::shared_ptr<CryptoCipher> makeCipher(int algorithm) {
    switch (algorithm) {
        case VAULTPAD_CRYPTO_RSA_1024:
            return std::make_shared<RsaDecryption>(kRsa1024Size);
        case VAULTPAD_CRYPTO_RSA_2048:
            return std::make_shared<RsaDecryption>(kRsa2048Size);
        case VAULTPAD_CRYPTO_AES_256:
            return std::make_shared<AesDecryption>();
        default:
            return nullptr;
    }
}

}  // namespace

}  // namespace vaultpad::host

CryptoCoreContainer* create_CryptoCoreContainer(int algorithm) {
    using namespace vaultpad::host;
    return orFailure(static_cast<CryptoCoreContainer*>(nullptr), [algorithm]() -> CryptoCoreContainer* {
        std::shared_ptr<CryptoCipher> cipher = makeCipher(algorithm);
        return cipher ? Containers::instance().add(algorithm, &kOperations, std::move(cipher)) : nullptr;
    });
}

void destroy_CryptoCoreContainer(CryptoCoreContainer* container) {
    vaultpad::host::Containers::instance().remove(container);
}
