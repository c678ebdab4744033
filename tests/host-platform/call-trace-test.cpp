/* The trace of the services' calls. A process reads the variable once, so each test calls from a process of its own. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vaultpad-platform/dlog.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/ui-orientation.h>
#include <vaultpad-platform/vconf.h>

#include "television-fixture.h"

namespace {

using testing::MatchesRegex;

class CallTraceTest : public TelevisionFixture {
protected:
    std::string tracePath() const { return folder().string() + "/trace"; }

    /* Calls services in a child with VAULTPAD_TRACE at the path, and returns what the child wrote to stderr. */
    std::string callServices(const std::string& path) {
        testing::internal::CaptureStderr();
        const pid_t child = fork();
        if (child == 0) {
            setenv("VAULTPAD_TRACE", path.c_str(), 1);
            int value = 0;
            vconf_get_int("db/menu/system/accessibility/focuszoom", &value);
            ua_UI_orientation_get();
            tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, "vaultpad/res");
            __dlog_print(VAULTPAD_DLOG_MAIN, VAULTPAD_DLOG_INFO, "TAG", "%s: %s(%d) > \033[%s;%s;%smtext : %s\033[0m",
                         "file", "function", 1, "01", "32", "40", "2580");
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        return testing::internal::GetCapturedStderr();
    }

    std::string trace() const { return std::filesystem::exists(tracePath()) ? contentOf(tracePath()) : ""; }
};

TEST_F(CallTraceTest, HasALineWithTimesForEachCall) {
    useTelevision("[log]\ntarget=none\n");
    EXPECT_EQ(callServices(tracePath()), "");
    EXPECT_THAT(trace(), MatchesRegex("[0-9]+ [0-9]+ vconf_get_int db/menu/system/accessibility/focuszoom\n"
                                      "[0-9]+ [0-9]+ ua_UI_orientation_get\n"
                                      "[0-9]+ [0-9]+ tzplatform_mkpath vaultpad/res\n"
                                      "[0-9]+ [0-9]+ __dlog_print text : %s\n"));
}

TEST_F(CallTraceTest, HoldsNothingThatALogLineCarries) {
    useTelevision("[log]\ntarget=none\n");
    callServices(tracePath());
    EXPECT_THAT(trace(), testing::Not(testing::HasSubstr("2580")));
}

TEST_F(CallTraceTest, IsNotWrittenWithoutAFile) {
    useTelevision("[log]\ntarget=none\n");
    EXPECT_EQ(callServices(""), "");
    EXPECT_EQ(trace(), "");
}

TEST_F(CallTraceTest, SaysOnceThatItsFileCannotBeWritten) {
    useTelevision("[log]\ntarget=none\n");
    EXPECT_EQ(callServices("/nowhere/trace"),
              "/nowhere/trace: the trace cannot be written: No such file or directory; correct VAULTPAD_TRACE\n");
}

}  // namespace
