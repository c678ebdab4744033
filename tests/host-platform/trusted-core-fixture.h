/* A context of the trusted-execution client, and sessions with the tests' trusted application (TA). */
#ifndef VAULTPAD_TESTS_HOST_PLATFORM_TRUSTED_CORE_FIXTURE_H
#define VAULTPAD_TESTS_HOST_PLATFORM_TRUSTED_CORE_FIXTURE_H

#include <cstdint>
#include <string>
#include <vector>

#include "scripted-orders.h"
#include "television-fixture.h"

/* The words of SCRIPTED_TELL_PROCESS. */
enum ProcessWord { kProcessId, kBlockedSignal, kIgnoresSigpipe, kDescriptors, kProcessWords };

/* Checks at its end that no child process and no descriptor stayed behind. */
class TrustedCoreFixture : public TelevisionFixture {
protected:
    TrustedCoreFixture();
    ~TrustedCoreFixture() override;

    /* Writes a key file whose [secure-world] names the tests' TA and has these lines, too. */
    void useTa(const std::string& more = "");

    /* Makes the TAs that are started from now on begin in another way. */
    void startTaThat(const char* start);

    /* Opens a session on context_; with a UUID. */
    int open();

    /* Makes a block on context_ with these words in it. */
    void* block(uint32_t size, const std::vector<uint32_t>& words = {});

    int invoke(uint32_t event);

    /* Invokes an event that tells something, with one new block, and returns the first words of that block. */
    std::vector<uint32_t> ask(uint32_t event, std::size_t count);

    /* Reads the next words of a block. */
    std::vector<uint32_t> words(void* from, std::size_t count);

    void* context_ = nullptr;

private:
    std::size_t descriptors_ = 0;
};

/* Makes a context with the UUID that the tests use. */
void* makeContext();

/* Numbers of the process's open descriptors. */
std::size_t countDescriptors();

/* True when this process has no child, not even an ended one. */
bool hasNoChild();

#endif
