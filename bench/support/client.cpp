#include "client.h"

#include <sys/resource.h>
#include <unistd.h>
#include <vaultpad/vaultpad.h>

#include <array>
#include <fstream>
#include <stdexcept>

namespace vaultpad::bench {

namespace {

constexpr unsigned int kModulusBytes = 256;

/* Odd, of full length, and no product of primes that anybody knows: good for encryption only. */
std::array<unsigned char, kModulusBytes + 3> publicKey() {
    std::array<unsigned char, kModulusBytes + 3> key;
    key.fill(0xB5);
    key[kModulusBytes] = 1;
    key[kModulusBytes + 1] = 0;
    key[kModulusBytes + 2] = 1;
    return key;
}

}  // namespace

void openPad(int type) {
    auto key = publicKey();
    unsigned char nonce[] = {1, 2, 3, 4};
    if (CsapiVPADcreate(type, 0, 0, 0, key.data(), kModulusBytes, 3, nonce, sizeof nonce) != 0) {
        throw std::runtime_error("the pad could not be opened");
    }
}

void pressKey(const char* name) {
    unsigned int value = 0;
    unsigned int closed = 0;
    if (CsapiVPADevent(name, &value, &closed) != 0) {
        throw std::runtime_error(std::string("the trusted application did not take the key ") + name);
    }
}

long residentKilobytes() {
    long total = 0;
    long resident = 0;
    std::ifstream("/proc/self/statm") >> total >> resident;
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

long peakKilobytes() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

}  // namespace vaultpad::bench
