#include <gtest/gtest.h>
#include <vaultpad-platform/cynara.h>

#include <string>

#include "television-fixture.h"

namespace {

constexpr const char* kPrivilege = "http://tizen.org/privilege/internal/default/platform";

class CynaraTest : public TelevisionFixture {
protected:
    void SetUp() override { ASSERT_EQ(cynara_initialize(&handle_, nullptr), 0); }
    void TearDown() override { cynara_finish(handle_); }

    bool allows(const char* client, const char* user, const char* privilege = kPrivilege) {
        return cynara_check(handle_, client, "", user, privilege) == VAULTPAD_CYNARA_ALLOWED;
    }

    void usePolicy(const std::string& policy) { useTelevision("[privilege]\n" + policy); }

    cynara* handle_ = nullptr;
};

TEST_F(CynaraTest, AllowsEveryoneByDefault) {
    EXPECT_TRUE(allows("label", "1000"));
}

TEST_F(CynaraTest, DeniesEveryoneWhenTheDefaultSaysSo) {
    usePolicy("default=deny\n");
    EXPECT_FALSE(allows("label", "1000"));
}

TEST_F(CynaraTest, AllowsWhomTheAllowListNamesAgainstTheDefault) {
    usePolicy(std::string("default=deny\nallow=good 1000 ") + kPrivilege + "; other * *\n");
    EXPECT_TRUE(allows("good", "1000"));
    EXPECT_FALSE(allows("good", "1001"));
    EXPECT_FALSE(allows("good", "1000", "http://tizen.org/privilege/else"));
    EXPECT_FALSE(allows("goo", "1000"));
    EXPECT_TRUE(allows("other", "5", "anything"));
}

TEST_F(CynaraTest, DeniesWhomBothListsName) {
    usePolicy("allow=* * *\ndeny=bad * *\n");
    EXPECT_FALSE(allows("bad", "1000"));
    EXPECT_TRUE(allows("good", "1000"));
}

TEST_F(CynaraTest, DeniesOneUserOnly) {
    usePolicy("deny=* 1001 *\n");
    EXPECT_FALSE(allows("label", "1001"));
    EXPECT_TRUE(allows("label", "1000"));
}

TEST_F(CynaraTest, TakesALabelWithSpacesAndTheKernelsNewline) {
    usePolicy("default=deny\nallow=confined (enforce) * *\n");
    EXPECT_TRUE(allows("confined (enforce)\n", "0"));
    EXPECT_FALSE(allows("confined", "0"));
}

TEST_F(CynaraTest, MatchesAnEmptyLabelOnlyByAStar) {
    usePolicy("default=deny\nallow=label * *\n");
    EXPECT_FALSE(allows("", "0"));
    usePolicy("default=deny\nallow=* * *\n");
    EXPECT_TRUE(allows("", "0"));
}

TEST_F(CynaraTest, DeniesNullArguments) {
    EXPECT_NE(cynara_check(handle_, nullptr, "", "0", kPrivilege), VAULTPAD_CYNARA_ALLOWED);
    EXPECT_NE(cynara_check(handle_, "l", nullptr, "0", kPrivilege), VAULTPAD_CYNARA_ALLOWED);
    EXPECT_NE(cynara_check(handle_, "l", "", nullptr, kPrivilege), VAULTPAD_CYNARA_ALLOWED);
    EXPECT_NE(cynara_check(handle_, "l", "", "0", nullptr), VAULTPAD_CYNARA_ALLOWED);
    EXPECT_NE(cynara_initialize(nullptr, nullptr), 0);
}

TEST_F(CynaraTest, RefusesNullAndStaleHandles) {
    cynara* stale = nullptr;
    ASSERT_EQ(cynara_initialize(&stale, nullptr), 0);
    ASSERT_EQ(cynara_finish(stale), 0);
    cynara* fresh = nullptr;
    ASSERT_EQ(cynara_initialize(&fresh, nullptr), 0);
    for (cynara* const bad : {static_cast<cynara*>(nullptr), stale}) {
        EXPECT_NE(cynara_check(bad, "l", "", "0", kPrivilege), VAULTPAD_CYNARA_ALLOWED);
        EXPECT_NE(cynara_finish(bad), 0);
    }
    EXPECT_EQ(cynara_finish(fresh), 0);
}

}  // namespace
