/* An application that uses the library: one RSA key, one session at a time. */
#ifndef VAULTPAD_TESTS_INTEGRATION_CLIENT_H
#define VAULTPAD_TESTS_INTEGRATION_CLIENT_H

#include <vaultpad/vaultpad.h>

#include <string>
#include <vector>

/* What one key event brought. */
struct EventResult {
    int result;
    unsigned int value;
    unsigned int closed;
};

class Client {
public:
    explicit Client(unsigned int rsaBits = 2048);
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    /* Opens, shows and keys a pad with the CsapiVPAD* family. Returns what CsapiVPADcreate() does. */
    int open(int type, int extra = 0);

    /* Gives the open session the public key, as the plain family does it. */
    int setPublicKey();

    EventResult press(const std::string& key);

    /* Presses "Right*3,Return"-like keys until the pad is done or a key fails; returns the last event. */
    EventResult pressAll(const std::string& keys);

    /* Decrypts the latest result; empty when there is none. */
    std::string decrypt() const;

private:
    std::vector<unsigned char> modulus_;
    std::vector<unsigned char> publicExponent_;
    std::vector<unsigned char> privateExponent_;
};

#endif
