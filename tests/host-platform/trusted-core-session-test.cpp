/* Sessions that go well: what the trusted application (TA) is started with, and what events carry. */
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vaultpad-platform/trusted-core.h>

#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "trusted-core-fixture.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

class SessionTest : public TrustedCoreFixture {
protected:
    std::vector<std::string> arguments() {
        void* const answer = block(4096);
        EXPECT_EQ(invoke(SCRIPTED_TELL_ARGUMENTS), 0);
        void* data = nullptr;
        EXPECT_EQ(tzfw_core_read_blob(context_, answer, &data, 4096), 0);
        std::vector<std::string> result;
        for (const char* text = static_cast<const char*>(data); *text != '\0'; text += std::strlen(text) + 1) {
            result.emplace_back(text);
        }
        return result;
    }
};

TEST_F(SessionTest, StartsTheTaWithTheTelevisionsDefaults) {
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(arguments(), ElementsAre(VAULTPAD_TEST_TA, "--channel", "3", "--display", "none", "--view", "pad",
                                         "--voice", "none", "--log", "stderr"));
}

TEST_F(SessionTest, StartsTheTaWithTheTelevisionsSettings) {
    useTa(
        "display=png\nframes=frames\nview=screen\nstore=/some/store\nlog=ta.log\n"
        "[sound]\nvoice=files\nvoice-folder=voice\nvoice-player=/bin/player\n");
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(arguments(), ElementsAre(VAULTPAD_TEST_TA, "--channel", "3", "--display", "png", "--frames",
                                         folder().string() + "/frames", "--view", "screen", "--store", "/some/store",
                                         "--voice", "files", "--voice-folder", folder().string() + "/voice",
                                         "--voice-player", "/bin/player", "--log", folder().string() + "/ta.log"));
}

/* Small blocks are made anew or used again: the caller cannot tell. */
TEST_F(SessionTest, HandsOutEveryBlockZeroedUnderANewHandle) {
    ASSERT_EQ(open(), 0);
    void* const first = block(64, {1, 2, 3});
    ASSERT_EQ(invoke(SCRIPTED_TELL_UUID), 0);
    tzfw_core_release_shared_memory(context_, first);
    void* const second = block(64);
    EXPECT_NE(second, first);
    EXPECT_THAT(words(second, 16), ElementsAreArray(std::vector<uint32_t>(16, 0)));
    EXPECT_EQ(tzfw_core_write_uint(context_, first, 7), -1);
    EXPECT_THAT(words(block(128), 32), ElementsAreArray(std::vector<uint32_t>(32, 0)));
}

TEST_F(SessionTest, CarriesABlockThatIsUsedAgain) {
    ASSERT_EQ(open(), 0);
    for (int round = 0; round < 3; ++round) {
        void* const answer = block(64);
        ASSERT_EQ(invoke(SCRIPTED_TELL_UUID), 0);
        void* data = nullptr;
        ASSERT_EQ(tzfw_core_read_blob(context_, answer, &data, 16), 0);
        EXPECT_EQ(static_cast<const uint8_t*>(data)[15], 15) << "round " << round;
        tzfw_core_release_shared_memory(context_, answer);
    }
}

TEST_F(SessionTest, AsksForTheUuidBigEndian) {
    ASSERT_EQ(open(), 0);
    void* const answer = block(64);
    ASSERT_EQ(invoke(SCRIPTED_TELL_UUID), 0);
    void* data = nullptr;
    ASSERT_EQ(tzfw_core_read_blob(context_, answer, &data, 16), 0);
    const uint8_t expected[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
    EXPECT_EQ(std::memcmp(data, expected, sizeof expected), 0);
}

TEST_F(SessionTest, StartsTheTaWithCleanSignalsAndOnlyItsOwnDescriptors) {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    struct sigaction before = {};
    ASSERT_EQ(sigaction(SIGPIPE, &ignore, &before), 0);
    sigset_t blocked;
    sigset_t mask;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(pthread_sigmask(SIG_BLOCK, &blocked, &mask), 0);
    const int stray = fcntl(STDERR_FILENO, F_DUPFD, 10); /* kept open on exec */
    const int opened = open();
    close(stray);
    pthread_sigmask(SIG_SETMASK, &mask, nullptr);
    sigaction(SIGPIPE, &before, nullptr);
    ASSERT_EQ(opened, 0);
    const std::vector<uint32_t> process = ask(SCRIPTED_TELL_PROCESS, kProcessWords);
    EXPECT_EQ(process[kBlockedSignal], 0u);
    EXPECT_EQ(process[kIgnoresSigpipe], 0u);
    EXPECT_EQ(process[kDescriptors], 0b1111u) << "the standard streams and the channel";
}

TEST_F(SessionTest, OpensWhenTheStandardInputIsClosedAndTheChannelGetsLowNumbers) {
    const int saved = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 100);
    close(STDIN_FILENO);
    const int opened = open();
    const std::vector<uint32_t> process =
        opened == 0 ? ask(SCRIPTED_TELL_PROCESS, kProcessWords) : std::vector<uint32_t>(kProcessWords);
    const int closed = tzfw_core_close_session(context_);
    if (saved >= 0) {
        dup2(saved, STDIN_FILENO);
        close(saved);
    }
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(closed, 0);
    EXPECT_EQ(process[kDescriptors], 0b1111u) << "a closed standard stream is /dev/null in the TA";
}

TEST_F(SessionTest, CarriesABlockWithItsSizeAndWhatWasWritten) {
    ASSERT_EQ(open(), 0);
    void* const made = block(6144000, {0xABCD, 2, 3});
    ASSERT_EQ(invoke(SCRIPTED_TELL_BLOCKS), 0);
    EXPECT_THAT(words(made, 5), ElementsAre(1u, 6144000u, 12u, 6144000u, 0xABCDu));
}

TEST_F(SessionTest, CarriesBlocksWhoseSizeCannotChange) {
    ASSERT_EQ(open(), 0);
    EXPECT_THAT(ask(SCRIPTED_TELL_SEALS, 1),
                ElementsAre(static_cast<uint32_t>(F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL)));
}

TEST_F(SessionTest, CarriesTwoBlocksOldestFirstAndReadsTheAnswerInTheLast) {
    ASSERT_EQ(open(), 0);
    void* const request = block(100, {11, 12});
    void* const answer = block(2048);
    ASSERT_EQ(invoke(SCRIPTED_TELL_BLOCKS), 0);
    EXPECT_THAT(words(answer, 9), ElementsAre(2u, 100u, 8u, 100u, 11u, 2048u, 0u, 2048u, 0u));
    EXPECT_THAT(words(request, 2), ElementsAre(11u, 12u));
}

TEST_F(SessionTest, CarriesABlockOnlyOnce) {
    ASSERT_EQ(open(), 0);
    block(100, {1});
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
    block(200, {2});
    EXPECT_NE(invoke(SCRIPTED_REFUSE), 0);
    EXPECT_THAT(ask(SCRIPTED_TELL_BLOCKS, 3), ElementsAre(1u, 4096u, 0u));
}

TEST_F(SessionTest, CarriesTheFourNewestBlocksAndNoReleasedOne) {
    ASSERT_EQ(open(), 0);
    for (uint32_t i = 1; i <= 5; ++i) {
        block(100 * i, {i});
    }
    void* const released = block(999, {9});
    tzfw_core_release_shared_memory(context_, released);
    void* const last = block(2048);
    ASSERT_EQ(invoke(SCRIPTED_TELL_BLOCKS), 0);
    EXPECT_THAT(words(last, 17),
                ElementsAre(4u, 300u, 4u, 300u, 3u, 400u, 4u, 400u, 4u, 500u, 4u, 500u, 5u, 2048u, 0u, 2048u, 0u));
}

TEST_F(SessionTest, CarriesAnEventWithoutABlock) {
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
}

TEST_F(SessionTest, MayBeOpenedAgainOnTheSameContext) {
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(open(), 0);
        EXPECT_EQ(invoke(SCRIPTED_ACCEPT), 0);
        EXPECT_EQ(tzfw_core_close_session(context_), 0);
        EXPECT_NE(invoke(SCRIPTED_ACCEPT), 0);
    }
}

TEST_F(SessionTest, LeavesNeitherProcessesNorDescriptorsBehind) {
    const std::size_t before = countDescriptors();
    for (int round = 0; round < 10; ++round) {
        void* const context = makeContext();
        ASSERT_EQ(tzfw_core_open_session(context), 0);
        tzfw_core_create_shared_memory(context, 0, 6144000, 3, 3);
        EXPECT_EQ(tzfw_core_invoke_event(context, SCRIPTED_ACCEPT), 0);
        if (round % 2 == 0) {
            EXPECT_EQ(tzfw_core_close_session(context), 0);
        }
        tzfw_core_finalize_context(context);
        EXPECT_TRUE(hasNoChild());
    }
    EXPECT_EQ(countDescriptors(), before);
}

TEST_F(SessionTest, RunsBesideOthersOnOtherThreads) {
    std::atomic<int> accepted{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&accepted]() {
            void* const context = makeContext();
            EXPECT_EQ(tzfw_core_open_session(context), 0);
            for (int event = 0; event < 50; ++event) {
                void* const made = tzfw_core_create_shared_memory(context, 0, 4096, 3, 3);
                accepted += tzfw_core_invoke_event(context, SCRIPTED_ACCEPT) == 0 ? 1 : 0;
                tzfw_core_release_shared_memory(context, made);
            }
            EXPECT_EQ(tzfw_core_close_session(context), 0);
            tzfw_core_finalize_context(context);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(accepted, 150);
}

TEST_F(SessionTest, WaitsForALateAnswerThroughSignals) {
    struct sigaction action = {};
    action.sa_handler = [](int) {}; /* without SA_RESTART: calls are interrupted */
    struct sigaction before = {};
    ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
    ASSERT_EQ(open(), 0);
    std::atomic<bool> done{false};
    const pthread_t self = pthread_self();
    std::thread sender([&done, self]() {
        while (!done) {
            pthread_kill(self, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    const int result = invoke(SCRIPTED_ANSWER_LATE);
    const int closed = tzfw_core_close_session(context_);
    done = true;
    sender.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(closed, 0);
}

TEST_F(SessionTest, LivesWithAClientThatIgnoresEndedChildren) {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    struct sigaction before = {};
    ASSERT_EQ(sigaction(SIGCHLD, &ignore, &before), 0);
    const int opened = open();
    const int invoked = invoke(SCRIPTED_ACCEPT);
    const int closed = tzfw_core_close_session(context_);
    sigaction(SIGCHLD, &before, nullptr);
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(invoked, 0);
    EXPECT_EQ(closed, 0);
}

TEST_F(SessionTest, ReapsNoOtherChildOfTheClient) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(5);
    }
    ASSERT_EQ(open(), 0);
    EXPECT_EQ(tzfw_core_close_session(context_), 0);
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 5);
}

TEST_F(SessionTest, EndsWithAClientThatIsKilled) {
    ASSERT_EQ(prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
    int pipeEnds[2];
    ASSERT_EQ(pipe2(pipeEnds, O_CLOEXEC), 0);
    const pid_t client = fork();
    if (client == 0) {
        if (open() == 0) {
            const uint32_t ta = ask(SCRIPTED_TELL_PROCESS, kProcessWords)[kProcessId];
            if (write(pipeEnds[1], &ta, sizeof ta) != sizeof ta) {
                _exit(1);
            }
        }
        for (;;) {
            pause();
        }
    }
    uint32_t ta = 0;
    ASSERT_EQ(read(pipeEnds[0], &ta, sizeof ta), static_cast<ssize_t>(sizeof ta));
    kill(client, SIGKILL);
    EXPECT_EQ(waitpid(client, nullptr, 0), client);
    int status = -1;
    EXPECT_EQ(waitpid(static_cast<pid_t>(ta), &status, 0), static_cast<pid_t>(ta)); /* or the test times out */
    EXPECT_TRUE(WIFEXITED(status));
    close(pipeEnds[0]);
    close(pipeEnds[1]);
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

}  // namespace
