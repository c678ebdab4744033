#include "toolkit-session.h"

#include <Ecore.h>
#include <Evas.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "runtime-folder.h"

namespace {

using vaultpad::ToolkitSession;

class RuntimeEnvironment : public testing::Environment {
private:
    vaultpad::test::RuntimeFolder runtime_;
};

// Owned by GoogleTest.
[[maybe_unused]] const testing::Environment* const runtime = testing::AddGlobalTestEnvironment(new RuntimeEnvironment);

// All that the toolkit takes over, and some that it does not.
constexpr int kSignals[] = {SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGUSR1,  SIGUSR2,
                            SIGCHLD, SIGPIPE, SIGALRM, SIGPWR,  SIGWINCH, SIGCONT};

// The signal that arrives just before Ecore comes up; 0 for none.
int raisedBeforeEcore = 0;
volatile std::sig_atomic_t received = 0;

void clientsHandler(int /*signal*/) {}
void clientsDetailedHandler(int /*signal*/, siginfo_t* /*info*/, void* /*context*/) {}

struct sigaction dispositionOf(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action;
}

void expectClientsHandlers() {
    for (const int signal : kSignals) {
        const struct sigaction action = dispositionOf(signal);
        if (signal == SIGUSR1) {
            EXPECT_TRUE((action.sa_flags & SA_SIGINFO) != 0);
            EXPECT_EQ(action.sa_sigaction, &clientsDetailedHandler);
            EXPECT_TRUE(sigismember(&action.sa_mask, SIGTERM) == 1);
        } else {
            EXPECT_EQ(action.sa_handler, &clientsHandler) << strsignal(signal);
        }
    }
}

class ClientsSignals : public testing::Test {
protected:
    ClientsSignals() {
        for (const int signal : kSignals) {
            struct sigaction action {};
            if (signal == SIGUSR1) {
                action.sa_flags = SA_SIGINFO | SA_RESTART;
                action.sa_sigaction = &clientsDetailedHandler;
                sigaddset(&action.sa_mask, SIGTERM);
            } else {
                action.sa_handler = &clientsHandler;
            }
            sigaction(signal, &action, nullptr);
        }
    }
    ~ClientsSignals() override {
        for (const int signal : kSignals) {
            ::signal(signal, SIG_DFL);
        }
    }
};

TEST_F(ClientsSignals, AreTheSameDuringAndAfterASession) {
    {
        const ToolkitSession session;
        expectClientsHandlers();
    }
    expectClientsHandlers();
}

TEST(ClientsSignal, ReachesItsHandlerUpToTheMomentThatEcoreTakesOver) {
    signal(SIGCHLD, [](int) { ++received; });
    received = 0;
    raisedBeforeEcore = SIGCHLD;
    const ToolkitSession session;
    EXPECT_EQ(raisedBeforeEcore, 0) << "Ecore was not brought up";
    EXPECT_EQ(received, 1);
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(ClientsSignals, AreTheSameAfterEachOfTwoNestedSessions) {
    auto first = std::make_unique<ToolkitSession>();
    auto second = std::make_unique<ToolkitSession>();
    expectClientsHandlers();
    first.reset();
    expectClientsHandlers();
    second.reset();
    expectClientsHandlers();
}

TEST(SignalMask, IsTheSameDuringAndAfterASession) {
    const auto blockedSignals = [] {
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        std::vector<int> blocked;
        for (int signal = 1; signal < NSIG; ++signal) {
            if (sigismember(&mask, signal) == 1) {
                blocked.push_back(signal);
            }
        }
        return blocked;
    };
    sigset_t terminal;
    sigset_t before;
    sigemptyset(&terminal);
    sigaddset(&terminal, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &terminal, &before);
    const std::vector<int> blocked = blockedSignals();
    EXPECT_THAT(blocked, testing::Contains(SIGHUP));
    {
        const ToolkitSession session;
        EXPECT_EQ(blockedSignals(), blocked);
    }
    EXPECT_EQ(blockedSignals(), blocked);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(DefaultSignals, StayTheDefaultsDuringAndAfterASession) {
    const auto expectDefaults = [] {
        for (const int signal : kSignals) {
            EXPECT_EQ(dispositionOf(signal).sa_handler, SIG_DFL) << strsignal(signal);
        }
    };
    expectDefaults();
    {
        const ToolkitSession session;
        expectDefaults();
    }
    expectDefaults();
}

TEST(ToolkitSession, BringsUpWhatDrawingNeeds) {
    const ToolkitSession session;
    EXPECT_GT(evas_render_method_lookup("buffer"), 0);
    EXPECT_EQ(ecore_thread_main_loop_begin(), 1);
    EXPECT_EQ(ecore_thread_main_loop_end(), 0);
    int data = 0;
    EXPECT_EQ(ecore_main_loop_thread_safe_call_sync([](void* argument) { return argument; }, &data), &data);
}

TEST(ToolkitSession, LeavesAClientsToolkitUp) {
    // The modules look for a system bus, and lose memory of their own where there is none.
    ecore_app_no_system_modules();
    ASSERT_EQ(evas_init(), 1);
    { const ToolkitSession session; }
    EXPECT_GT(evas_render_method_lookup("buffer"), 0);
    EXPECT_EQ(evas_shutdown(), 0);
}

TEST(ToolkitSession, KeepsTheLocaleThatTheEnvironmentDoesNotName) {
    for (const char* variable : {"LANG", "LC_ALL", "LC_CTYPE"}) {
        unsetenv(variable);
    }
    ASSERT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr);
    const ToolkitSession session;
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C.UTF-8");
}

TEST(ToolkitSession, CountsEachSession) {
    auto first = std::make_unique<ToolkitSession>();
    auto second = std::make_unique<ToolkitSession>();
    first.reset();
    EXPECT_GT(evas_render_method_lookup("buffer"), 0);
    second.reset();
    EXPECT_EQ(eina_init(), 1) << "something of the toolkit is still up";
    eina_shutdown();
}

TEST(ToolkitSession, CanFollowOnAnother) {
    for (int i = 0; i < 3; ++i) {
        const ToolkitSession session;
        Evas* canvas = evas_new();
        EXPECT_NE(canvas, nullptr);
        evas_free(canvas);
    }
}

// A system bus that hangs up on everyone who connects, and counts them.
class SystemBus {
public:
    SystemBus() {
        const std::string path = folder_.path() + "/bus";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        socket_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        ready_ = bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                 listen(socket_, SOMAXCONN) == 0;
        setenv("DBUS_SYSTEM_BUS_ADDRESS", ("unix:path=" + path).c_str(), 1);
        server_ = std::thread([this] {
            for (int client = accept(socket_, nullptr, nullptr); client >= 0;
                 client = accept(socket_, nullptr, nullptr)) {
                ++connections_;
                close(client);
            }
        });
    }
    ~SystemBus() {
        shutdown(socket_, SHUT_RDWR);
        server_.join();
        close(socket_);
        unsetenv("DBUS_SYSTEM_BUS_ADDRESS");
    }
    SystemBus(const SystemBus&) = delete;
    SystemBus& operator=(const SystemBus&) = delete;

    bool ready() const { return ready_; }
    int connections() const { return connections_; }

private:
    vaultpad::test::TemporaryFolder folder_;
    int socket_ = -1;
    bool ready_ = false;
    std::atomic<int> connections_{0};
    std::thread server_;
};

TEST(ToolkitSession, ConnectsToNoSystemBus) {
    const SystemBus bus;
    ASSERT_TRUE(bus.ready());
    { const ToolkitSession session; }
    EXPECT_EQ(bus.connections(), 0);
}

}  // namespace

// Stands before Ecore's own, which has neither handlers nor a pipe yet.
extern "C" int ecore_init() {
    if (raisedBeforeEcore != 0) {
        raise(std::exchange(raisedBeforeEcore, 0));
    }
    static const auto real = reinterpret_cast<int (*)()>(dlsym(RTLD_NEXT, "ecore_init"));
    return real();
}
