#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vaultpad-platform/dlog.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "television-fixture.h"

namespace {

/* Enough for some to meet each step of writing a line. */
constexpr int kInterruptions = 2000;
volatile sig_atomic_t handled = 0;

class DlogTest : public TelevisionFixture {
protected:
    void logToFile(const std::string& more = "") { useTelevision("[log]\ntarget=log\n" + more); }

    std::string logged() const { return contentOf(folder() / "log"); }
};

TEST_F(DlogTest, WritesALineWithPriorityAndTagToTheStandardErrorStream) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(__dlog_print(VAULTPAD_DLOG_MAIN, VAULTPAD_DLOG_INFO, "VAULTPAD_CA", "%s %d", "text", 5), 22);
    EXPECT_EQ(__dlog_print(VAULTPAD_DLOG_MAIN, VAULTPAD_DLOG_ERROR, "VPAD", "bad"), 12);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "I/VAULTPAD_CA: text 5\nE/VPAD: bad\n");
}

TEST_F(DlogTest, AppendsToAFileBesideTheKeyFileThatOnlyItsOwnerReads) {
    logToFile();
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "one");
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "two");
    EXPECT_EQ(logged(), "I/A: one\nI/A: two\n");
    struct stat status = {};
    ASSERT_EQ(stat((folder() / "log").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0077u, 0u);
}

TEST_F(DlogTest, WritesNothingToTheTargetNone) {
    useTelevision("[log]\ntarget=none\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(__dlog_print(0, VAULTPAD_DLOG_ERROR, "A", "text"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DlogTest, WritesOnlyErrorsAtTheLevelError) {
    logToFile("level=error\n");
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "quiet");
    __dlog_print(0, VAULTPAD_DLOG_ERROR, "A", "loud");
    EXPECT_EQ(logged(), "E/A: loud\n");
}

TEST_F(DlogTest, WritesALongLineWhole) {
    logToFile();
    for (const std::size_t length : {1017u, 1018u, 1019u, 1020u, 100000u}) {
        __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "%s", std::string(length, 'x').c_str());
    }
    std::istringstream lines(logged());
    for (const std::size_t length : {1017u, 1018u, 1019u, 1020u, 100000u}) {
        std::string line;
        std::getline(lines, line);
        EXPECT_EQ(line, "I/A: " + std::string(length, 'x'));
    }
}

TEST_F(DlogTest, TakesATagThatFillsALine) {
    logToFile();
    const std::string tag(2000, 't');
    __dlog_print(0, VAULTPAD_DLOG_INFO, tag.c_str(), "x");
    EXPECT_EQ(logged(), "I/" + tag + ": x\n");
}

TEST_F(DlogTest, TakesANullTagAndRefusesANullFormat) {
    logToFile();
    const char* format = nullptr;
    EXPECT_GT(__dlog_print(0, VAULTPAD_DLOG_INFO, nullptr, "x"), 0);
    EXPECT_LT(__dlog_print(0, VAULTPAD_DLOG_INFO, "A", format, 0), 0);
    EXPECT_EQ(logged(), "I/: x\n");
}

TEST_F(DlogTest, KeepsErrno) {
    logToFile();
    errno = ENOTTY;
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "x");
    EXPECT_EQ(errno, ENOTTY);
}

TEST_F(DlogTest, ReportsALineThatCannotBeWritten) {
    const int saved = dup(STDERR_FILENO);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    ASSERT_GE(dup2(full, STDERR_FILENO), 0);
    errno = ENOTTY;
    const int result = __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "x");
    const int error = errno;
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(full);
    EXPECT_LT(result, 0);
    EXPECT_EQ(error, ENOTTY);
}

TEST_F(DlogTest, FallsBackToTheStandardErrorStreamWhenTheFileIsTakenAway) {
    std::filesystem::create_directory(folder() / "logs");
    useTelevision("[log]\ntarget=logs/log\n");
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "x");
    std::filesystem::remove_all(folder() / "logs");
    testing::internal::CaptureStderr();
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "y");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "I/A: y\n");
}

TEST_F(DlogTest, WritesTheLinesOfSeveralThreadsWhole) {
    logToFile();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([i]() {
            for (int line = 0; line < 200; ++line) {
                __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "%s", std::string(300, static_cast<char>('a' + i)).c_str());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::istringstream lines(logged());
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_EQ(line, "I/A: " + std::string(300, line.back()));
    }
    EXPECT_EQ(count, 800);
}

TEST_F(DlogTest, MayBeUsedInASignalHandlerThatInterruptsItself) {
    logToFile();
    __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "the key file is read with the first line");
    struct sigaction action = {};
    action.sa_handler = [](int) {
        __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "from the handler");
        handled = handled + 1;
    };
    action.sa_flags = SA_RESTART;
    struct sigaction before = {};
    ASSERT_EQ(sigaction(SIGUSR2, &action, &before), 0);
    std::atomic<bool> done{false};
    const pthread_t self = pthread_self();
    std::thread sender([&done, self]() {
        while (!done) {
            pthread_kill(self, SIGUSR2);
            std::this_thread::sleep_for(std::chrono::microseconds(20));
        }
    });
    while (handled < kInterruptions) {
        __dlog_print(0, VAULTPAD_DLOG_INFO, "A", "from the thread");
    }
    done = true;
    sender.join();
    sigaction(SIGUSR2, &before, nullptr);
    EXPECT_NE(logged().find("from the handler"), std::string::npos);
}

}  // namespace
