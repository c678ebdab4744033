// How the process protects itself, and when it ends.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "hygiene.h"
#include "pad/locked-page.h"
#include "pad/typed-text.h"
#include "process-state.h"
#include "sample-pads.h"
#include "ta-client.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

constexpr uid_t kNobody = 65534;

// Runs the check in a child process and returns its exit status.
int inChild(const std::function<int()>& check) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(check());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void dropToOrdinaryUser() {
    if (geteuid() == 0 && (setresgid(kNobody, kNobody, kNobody) != 0 || setresuid(kNobody, kNobody, kNobody) != 0)) {
        _exit(126);
    }
}

TEST(Hygiene, MakesTheProcessUndumpableAndRulesCoreFilesOut) {
    EXPECT_EQ(0, inChild([] {
                  hardenProcess();
                  rlimit limit = {};
                  getrlimit(RLIMIT_CORE, &limit);
                  return prctl(PR_GET_DUMPABLE) == 0 && limit.rlim_cur == 0 && limit.rlim_max == 0 ? 0 : 1;
              }));
}

TEST(Hygiene, KeepsOtherProcessesOfTheSameUserOutOfItsMemory) {
    TaClient::Setup setup;
    setup.ownLog = false;  // the folder belongs to the user who runs the test
    setup.options = {"--log", "none"};
    setup.inChild = dropToOrdinaryUser;
    TaClient client(setup);
    ASSERT_EQ(0, client.open());
    const std::string memory = "/proc/" + std::to_string(client.process()) + "/mem";
    EXPECT_EQ(EACCES, inChild([&memory] {
                  dropToOrdinaryUser();
                  return open(memory.c_str(), O_RDONLY) >= 0 ? 0 : errno;
              }));
}

TEST(LockedPage, IsLockedLeftOutOfCoreFilesAndNotInheritedByAChild) {
    LockedPage page;
    page.data()[0] = 0x5a;
    std::ifstream maps("/proc/self/smaps");
    char start[32];
    std::snprintf(start, sizeof(start), "%lx-", reinterpret_cast<unsigned long>(page.data()));
    std::string line;
    std::string locked;
    std::string flags;
    while (std::getline(maps, line) && line.compare(0, std::string(start).size(), start) != 0) {
    }
    while (std::getline(maps, line) && flags.empty()) {
        if (line.compare(0, 7, "Locked:") == 0) {
            locked = line;
        } else if (line.compare(0, 8, "VmFlags:") == 0) {
            flags = line;
        }
    }
    EXPECT_NE(std::string::npos, flags.find(" dd")) << flags;
#if !defined(__SANITIZE_ADDRESS__)  // which makes mlock() do nothing
    EXPECT_NE(std::string::npos, flags.find(" lo")) << flags;
    EXPECT_EQ(std::string::npos, locked.find(" 0 kB")) << locked;
#endif
    EXPECT_EQ(0, inChild([&page] { return page.data()[0]; }));
    EXPECT_EQ(0x5a, page.data()[0]);
}

TEST(TypedText, LeavesNothingBehindWhenItIsWipedOrTakenBack) {
    TypedText text;
    text.append(u'1');
    text.append(u'2');
    EXPECT_TRUE(text.removeLast());
    std::uint8_t bytes[4] = {9, 9, 9, 9};
    text.encode(bytes);
    EXPECT_EQ('1', bytes[0]);
    EXPECT_EQ(9, bytes[2]);
    text.wipe();
    EXPECT_TRUE(text.empty());
    EXPECT_FALSE(text.removeLast());
}

TEST(Lifetime, RefusesToStartWhenTheTextCannotBeLocked) {
#if !defined(__SANITIZE_ADDRESS__)  // which makes mlock() do nothing
    TaClient::Setup setup;
    setup.ownLog = false;
    setup.options = {"--log", "none"};
    setup.inChild = [] {
        const rlimit none = {0, 0};
        setrlimit(RLIMIT_MEMLOCK, &none);
        dropToOrdinaryUser();
    };
    TaClient client(setup);
    EXPECT_EQ(-1, client.open());
    EXPECT_EQ(1, client.waitForEnd());
#else
    EXPECT_EQ(0, inChild([] {
                  LockedPage page;
                  return page.data()[0];
              }));
#endif
}

TEST(Lifetime, EndsWhenTheClientClosesItsEnd) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    client.closeChannel();
    EXPECT_EQ(0, client.waitForEnd());
}

struct ClientReport {
    pid_t ta;          // 0 when the session did not open
    pid_t holder;      // keeps the client's end of the channel open
    char folder[200];  // left behind by a killed client
};

[[noreturn]] void beAClientUntilKilled(int reportTo) {
    TaClient client;
    ClientReport report = {client.open() == 0 ? client.process() : 0, fork(), {}};
    if (report.holder != 0) {
        client.folder().copy(report.folder, sizeof(report.folder) - 1);
        if (write(reportTo, &report, sizeof(report)) != static_cast<ssize_t>(sizeof(report))) {
            _exit(1);
        }
    }
    for (;;) {
        pause();
    }
}

TEST(Lifetime, EndsWhenTheClientIsKilledEvenIfItsEndStaysOpenElsewhere) {
    int channel[2] = {-1, -1};
    ASSERT_EQ(0, pipe(channel));
    const pid_t middle = fork();
    ASSERT_GE(middle, 0);
    if (middle == 0) {
        beAClientUntilKilled(channel[1]);
    }
    ClientReport report = {};
    ASSERT_EQ(static_cast<ssize_t>(sizeof(report)), read(channel[0], &report, sizeof(report)));
    ASSERT_GT(report.ta, 0);
    EXPECT_FALSE(hasEndedOrIsZombie(report.ta));
    kill(middle, SIGKILL);
    waitpid(middle, nullptr, 0);
    EXPECT_TRUE(endsWithin(report.ta, 10));
    EXPECT_FALSE(hasEndedOrIsZombie(report.holder)) << "the channel has to be open still";
    kill(report.holder, SIGKILL);
    close(channel[0]);
    close(channel[1]);
    std::filesystem::remove_all(report.folder);
}

TEST(Lifetime, EndsOnTheSignalsThatAskForIt) {
    for (const int signal : {SIGTERM, SIGHUP, SIGQUIT}) {
        TaClient client;
        ASSERT_EQ(0, client.open());
        kill(client.process(), signal);
        EXPECT_EQ(0, client.waitForEnd()) << signal;
    }
}

TEST(Lifetime, LeavesTheTerminalsInterruptToTheClient) {
    TaClient client;
    ASSERT_EQ(0, client.open());
    kill(client.process(), SIGINT);
    kill(client.process(), SIGPIPE);
    EXPECT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
}

TEST(Lifetime, RefusesToStartWithoutItsChannel) {
    TaClient::Setup setup;
    setup.options = {"--channel", "97"};
    setup.inChild = dropMessages;
    TaClient client(setup);
    EXPECT_EQ(TaClient::kEnded, client.open());
    EXPECT_NE(0, client.waitForEnd());
}

}  // namespace
}  // namespace vaultpad::secureworld
