// The check of log lines that every test ends with, checked itself.
#include <gtest/gtest.h>

#include "exception.h"
#include "log-line.h"
#include "log.h"
#include "platform-test.h"

namespace vaultpad::test {

namespace {

class LogFormTest : public PlatformTest {};

LogLine only() {
    EXPECT_EQ(platform().log().size(), 1u);
    return platform().log().front();
}

}  // namespace

TEST_F(LogFormTest, InformationIsGreenAndErrorsAreRed) {
    CA_LOG_INFO("fine");
    const LogLine info = only();
    platform().clearLog();
    CA_LOG_ERROR("bad %d", 7);
    const LogLine error = only();
    EXPECT_EQ(info.text,
              "entry-log_test.cpp: TestBody(" + std::to_string(info.line()) + ") > \033[01;32;40mfine\033[0m");
    EXPECT_EQ(info.priority, 4);
    EXPECT_EQ(error.text,
              "entry-log_test.cpp: TestBody(" + std::to_string(error.line()) + ") > \033[01;31;40mbad 7\033[0m");
    EXPECT_EQ(error.priority, 6);
    EXPECT_GT(error.line(), info.line());
}

TEST_F(LogFormTest, EntryPointsWritePlainLines) {
    VPAD_LOG_ERROR("plain");
    EXPECT_EQ(only().text, "entry-log_test.cpp: TestBody(" + std::to_string(only().line()) + ") > plain");
    EXPECT_EQ(only().tag, "VPAD");
}

TEST(LogLineTest, FaultsAreFound) {
    const std::string prefix = "a.cpp: f(3) > ";
    const std::string green = "\033[01;32;40m";
    const std::string end = "\033[0m";
    EXPECT_EQ(faultOf({0, 4, "VAULTPAD_CA", prefix + green + "text" + end}), "");
    EXPECT_EQ(faultOf({0, 6, "VPAD", prefix + "text"}), "");
    EXPECT_NE(faultOf({1, 6, "VPAD", prefix + "text"}), "");
    EXPECT_NE(faultOf({0, 5, "VPAD", prefix + "text"}), "");
    EXPECT_NE(faultOf({0, 6, "VPAD", "text"}), "");
    EXPECT_NE(faultOf({0, 6, "VPAD", "/src/a.cpp: f(3) > text"}), "");
    EXPECT_NE(faultOf({0, 6, "VPAD", "a.cpp: f(0) > text"}), "");
    EXPECT_NE(faultOf({0, 6, "VPAD", "a.cpp: int f()(3) > text"}), "");
    EXPECT_NE(faultOf({0, 4, "VPAD", prefix + green + "text" + end}), "");
    EXPECT_NE(faultOf({0, 6, "VAULTPAD_CA", prefix + green + "text" + end}), "");
    EXPECT_NE(faultOf({0, 4, "VAULTPAD_CA", prefix + green + "text"}), "");
    EXPECT_NE(faultOf({0, 4, "OTHER", prefix + green + "text" + end}), "");
}

TEST(ExceptionTest, KeepsACopyOfItsMessage) {
    char text[] = "message";
    const exception::Exception fromText(text);
    text[0] = '-';
    EXPECT_STREQ(fromText.what(), "message");
    const exception::Exception fromString(std::string("other"));
    EXPECT_STREQ(fromString.what(), "other");
    const std::exception& base = fromString;
    EXPECT_STREQ(base.what(), "other");
}

}  // namespace vaultpad::test
