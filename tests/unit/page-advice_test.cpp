// Large pages: what the advice may change, and what it must leave alone.
#include "page-advice.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

namespace vaultpad::test {
namespace {

constexpr std::size_t kMiB = std::size_t{1} << 20;
constexpr std::size_t kCanvas = 8 * kMiB;
constexpr long kPages = static_cast<long>(kCanvas / 4096);

long faults() {
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_minflt;
}

#ifndef __SANITIZE_ADDRESS__
// The file has the setting in force in brackets.
bool systemHasHugePages() {
    std::string settings;
    std::getline(std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled"), settings);
    return !settings.empty() && settings.find("[never]") == std::string::npos;
}
#endif

// Of a block that lies on its own, as a canvas does.
class PageAdvice : public testing::Test {
protected:
    PageAdvice() : block_(static_cast<unsigned char*>(std::malloc(kCanvas))) {}
    ~PageAdvice() override { std::free(block_); }

    unsigned char* const block_;
};

TEST_F(PageAdvice, MakesThePagesOfABlockSoThatFillingItCostsFewFaults) {
    makePages(block_, kCanvas);
    const long before = faults();
    std::memset(block_, 1, kCanvas);
    EXPECT_LT(faults() - before, kPages / 4);
}

TEST_F(PageAdvice, LeavesWhatABlockHolds) {
    std::memset(block_, 7, kCanvas);
    makePages(block_ + 1, kCanvas - 2);
    for (std::size_t i = 0; i < kCanvas; i += 1021) {
        ASSERT_EQ(7, block_[i]) << i;
    }
}

TEST_F(PageAdvice, LeavesWhatABlockShorterThanAPageHolds) {
    std::memset(block_, 7, 8);
    for (const std::size_t bytes : {std::size_t{3}, std::size_t{0}}) {
        makePages(block_ + 5, bytes);
        EXPECT_EQ(7, block_[5]) << bytes << " bytes";
    }
}

TEST_F(PageAdvice, LeavesNothingAllocated) {
    const auto before = mallinfo2();
    growHeapInHugePages(kCanvas);
    const auto after = mallinfo2();
    EXPECT_EQ(before.uordblks + before.hblkhd, after.uordblks + after.hblkhd);
}

// The address sanitizer has a heap of its own, which takes no advice.
#ifndef __SANITIZE_ADDRESS__
TEST_F(PageAdvice, LetsBlocksOfAKeysSizeCostFewFaults) {
    if (!systemHasHugePages()) {
        GTEST_SKIP() << "this system has no huge pages: /sys/kernel/mm/transparent_hugepage/enabled";
    }
    growHeapInHugePages(kCanvas);
    constexpr std::size_t kKey = 23 * 1024;
    std::vector<void*> keys(kCanvas / kKey);
    const long before = faults();
    for (void*& key : keys) {
        key = std::malloc(kKey);
        std::memset(key, 1, kKey);
    }
    EXPECT_LT(faults() - before, kPages / 2);
    for (void* key : keys) {
        std::free(key);
    }
}
#endif

}  // namespace
}  // namespace vaultpad::test
