/* A client of the library: opens the pad, passes keys on, decrypts the result. */
#ifndef VAULTPAD_DEMO_PAD_CLIENT_H
#define VAULTPAD_DEMO_PAD_CLIENT_H

#include <vaultpad/vaultpad.h>

#include <functional>
#include <memory>
#include <string>

#include "options.h"
#include "rsa-key-pair.h"

namespace vaultpad_demo {

/* How a session ended. */
struct Outcome {
    bool completed = false; /* an encrypted result came back */
    unsigned int encryptedKeyLength = 0;
    unsigned int encryptedDataLength = 0;
    std::string text;
};

/* One session over one family of entry points. Every operation throws std::runtime_error when the pad is lost. */
class PadClient {
public:
    virtual ~PadClient() = default;

    /* Opens and shows the pad. */
    virtual void open(const Options& options, RsaKeyPair& key) = 0;

    /* Passes a key on; returns true when the pad is done. */
    virtual bool press(const std::string& keyName) = 0;

    /* Takes the pad down; harmless when none is up. */
    virtual void close() = 0;

    /* Decrypts what the pad left behind. */
    Outcome collect(const RsaKeyPair& key);
};

std::unique_ptr<PadClient> makePadClient(const std::string& family);

}  // namespace vaultpad_demo

#endif
