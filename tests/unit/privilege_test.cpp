// The privilege gate.
#include <unistd.h>

#include <cerrno>

#include "platform-test.h"
#include "privilege-gate.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::size_t kLabelRead = 257;

class PrivilegeTest : public PlatformTest {
protected:
    PrivilegeTest() { libc().securityLabel = "pad-client"; }

    static std::string check(const std::string& label) {
        return "cynara_check(\"" + label + "\", \"\", \"" + std::to_string(getuid()) +
               "\", \"http://tizen.org/privilege/internal/default/platform\")";
    }
};

}  // namespace

TEST_F(PrivilegeTest, AsksForLabelUserAndPlatformPrivilege) {
    EXPECT_EQ(check_vpad_api_privilege(), 1);
    EXPECT_THAT(platform().journal(), ElementsAre("cynara_initialize(null)", check("pad-client"), "cynara_finish()"));
    EXPECT_THAT(platform().log(), IsEmpty());
}

class PrivilegeAnswer : public PrivilegeTest, public testing::WithParamInterface<int> {};

TEST_P(PrivilegeAnswer, OtherThanTwoIsNo) {
    platform().television.privilegeAnswer = GetParam();
    EXPECT_EQ(check_vpad_api_privilege(), 0);
    EXPECT_EQ(platform().count("cynara_finish"), 1);
    EXPECT_THAT(platform().log(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, PrivilegeAnswer, testing::Values(-1, 0, 1, 3, 258));

TEST_F(PrivilegeTest, ServiceThatCannotBeReachedIsNoAndNothingIsFinished) {
    platform().fail("cynara_initialize", 1, -13);
    EXPECT_EQ(check_vpad_api_privilege(), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("cynara_initialize() Fail(-13)"));
    EXPECT_THAT(platform().journal(), ElementsAre("cynara_initialize(null)"));
}

TEST_F(PrivilegeTest, LabelThatCannotBeOpenedIsNoWithTheErrorsNumber) {
    libc().securityLabelError = EACCES;
    EXPECT_EQ(check_vpad_api_privilege(), 0);
    EXPECT_THAT(platform().errors(),
                ElementsAre("fopen() proc self attr current Fail(" + std::to_string(EACCES) + ")"));
    EXPECT_THAT(platform().journal(), ElementsAre("cynara_initialize(null)", "cynara_finish()"));
}

TEST_F(PrivilegeTest, LabelThatCannotBeReadIsNo) {
    libc().freadFails = true;
    EXPECT_EQ(check_vpad_api_privilege(), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("fread() smack_label Fail(-1)"));
    EXPECT_THAT(platform().journal(), ElementsAre("cynara_initialize(null)", "cynara_finish()"));
}

TEST_F(PrivilegeTest, EmptyLabelIsAskedForAsItIs) {
    libc().securityLabel = "";
    EXPECT_EQ(check_vpad_api_privilege(), 1);
    EXPECT_THAT(platform().callsOf("cynara_check"), ElementsAre(check("")));
}

TEST_F(PrivilegeTest, LabelIsNotTrimmed) {
    libc().securityLabel = " label\n";
    check_vpad_api_privilege();
    EXPECT_THAT(platform().callsOf("cynara_check"), ElementsAre(check(" label\n")));
}

TEST_F(PrivilegeTest, LabelThatFillsTheReadIsTerminated) {
    libc().securityLabel = std::string(kLabelRead, 'x');
    check_vpad_api_privilege();
    EXPECT_THAT(platform().callsOf("cynara_check"), ElementsAre(check(std::string(kLabelRead, 'x'))));
}

TEST_F(PrivilegeTest, LongerLabelIsCut) {
    libc().securityLabel = std::string(kLabelRead + 40, 'x');
    check_vpad_api_privilege();
    EXPECT_THAT(platform().callsOf("cynara_check"), ElementsAre(check(std::string(kLabelRead, 'x'))));
}

TEST_F(PrivilegeTest, FailuresAreLoggedPlainlyByTheGate) {
    platform().fail("cynara_initialize");
    check_vpad_api_privilege();
    ASSERT_EQ(platform().log().size(), 1u);
    const LogLine line = platform().log().front();
    EXPECT_EQ(line.tag, "VPAD");
    EXPECT_EQ(line.text, "privilege-gate.cpp: check_vpad_api_privilege(" + std::to_string(line.line()) +
                             ") > cynara_initialize() Fail(-1)");
    EXPECT_GT(line.line(), 0);
}

}  // namespace vaultpad::test
