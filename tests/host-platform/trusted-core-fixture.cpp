#include "trusted-core-fixture.h"

#include <stdlib.h>
#include <sys/wait.h>
#include <vaultpad-platform/trusted-core.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

namespace {

constexpr uint32_t kBlockSize = 4096;

}  // namespace

void* makeContext() {
    static constexpr uint8_t kClockSeqAndNode[] = {8, 9, 10, 11, 12, 13, 14, 15};
    void* const context = tzfw_core_initialize_context(nullptr);
    EXPECT_NE(context, nullptr);
    EXPECT_EQ(tzfw_core_set_uuid(context, 0x00010203, 0x0405, 0x0607, kClockSeqAndNode), 0);
    return context;
}

std::size_t countDescriptors() {
    const std::filesystem::directory_iterator entries("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

bool hasNoChild() {
    return waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
}

TrustedCoreFixture::TrustedCoreFixture() : descriptors_(countDescriptors()) {
    unsetenv(VAULTPAD_SCRIPTED_TA_START);
    useTa();
    context_ = makeContext();
}

TrustedCoreFixture::~TrustedCoreFixture() {
    tzfw_core_finalize_context(context_);
    unsetenv(VAULTPAD_SCRIPTED_TA_START);
    EXPECT_TRUE(hasNoChild());
    EXPECT_EQ(countDescriptors(), descriptors_);
}

void TrustedCoreFixture::useTa(const std::string& more) {
    useTelevision("[log]\ntarget=log\n[secure-world]\nexecutable=" VAULTPAD_TEST_TA "\n" + more);
}

void TrustedCoreFixture::startTaThat(const char* start) {
    setenv(VAULTPAD_SCRIPTED_TA_START, start, 1);
}

int TrustedCoreFixture::open() {
    return tzfw_core_open_session(context_);
}

void* TrustedCoreFixture::block(uint32_t size, const std::vector<uint32_t>& words) {
    void* const made = tzfw_core_create_shared_memory(context_, 0, size, 3, 3);
    EXPECT_NE(made, nullptr);
    for (const uint32_t word : words) {
        EXPECT_EQ(tzfw_core_write_uint(context_, made, word), 0);
    }
    return made;
}

int TrustedCoreFixture::invoke(uint32_t event) {
    return tzfw_core_invoke_event(context_, event);
}

std::vector<uint32_t> TrustedCoreFixture::ask(uint32_t event, std::size_t count) {
    void* const answer = block(kBlockSize);
    EXPECT_EQ(invoke(event), 0);
    const std::vector<uint32_t> result = words(answer, count);
    tzfw_core_release_shared_memory(context_, answer);
    return result;
}

std::vector<uint32_t> TrustedCoreFixture::words(void* from, std::size_t count) {
    std::vector<uint32_t> result(count);
    for (uint32_t& word : result) {
        EXPECT_EQ(tzfw_core_read_uint(context_, from, &word), 0);
    }
    return result;
}
