// EFL brought up and taken down in a client that has its own signal handlers, with and without EFL of its own.
#include <Ecore.h>
#include <Evas.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "temporary-folder.h"
#include "toolkit-session.h"

namespace vaultpad::test {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGUSR2, SIGCHLD, SIGPIPE, SIGALRM, SIGPWR};

// A mark that the C library sets by itself (SA_RESTORER), without a name in its headers.
constexpr int kRestorerFlag = 0x04000000;

void clientHandler(int) {}

class ToolkitTest : public testing::Test {
protected:
    /* The client's handlers, each signal's with flags of its own. */
    static void installHandlers() {
        int flag = 0;
        for (const int number : kSignals) {
            struct sigaction action {};
            action.sa_handler = clientHandler;
            action.sa_flags = flag++ % 2 == 0 ? SA_RESTART : SA_NODEFER;
            sigaction(number, &action, nullptr);
        }
    }

    static std::map<int, struct sigaction> handlers() {
        std::map<int, struct sigaction> result;
        for (const int number : kSignals) {
            sigaction(number, nullptr, &result[number]);
        }
        return result;
    }

    static void expectSame(const std::map<int, struct sigaction>& before) {
        for (const auto& [number, now] : handlers()) {
            const struct sigaction& then = before.at(number);
            EXPECT_EQ(now.sa_handler, then.sa_handler) << strsignal(number);
            EXPECT_EQ(now.sa_flags & ~kRestorerFlag, then.sa_flags & ~kRestorerFlag) << strsignal(number);
        }
    }

    void TearDown() override {
        for (const int number : kSignals) {
            signal(number, SIG_DFL);
        }
    }
};

/* A message bus that nobody should call. It hangs up at once, so that a caller is found out and not kept waiting. */
class SilentBus {
public:
    SilentBus() : socket_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        const std::string path = folder_.path() + "/bus";
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        EXPECT_EQ(bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(socket_, 5), 0);
        for (const char* variable : kVariables) {
            setenv(variable, ("unix:path=" + path).c_str(), 1);
        }
        server_ = std::thread([this] { serve(); });
    }
    ~SilentBus() {
        shutdown(socket_, SHUT_RDWR);
        server_.join();
        close(socket_);
        for (const char* variable : kVariables) {
            unsetenv(variable);
        }
    }

    bool wasCalled() const { return called_; }

private:
    static constexpr const char* kVariables[] = {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"};

    void serve() {
        for (int connection = accept(socket_, nullptr, nullptr); connection >= 0;
             connection = accept(socket_, nullptr, nullptr)) {
            called_ = true;
            close(connection);
        }
    }

    TemporaryFolder folder_;
    int socket_;
    std::atomic<bool> called_{false};
    std::thread server_;
};

/* How often the D-Bus layer of EFL is initialised; 0 also when it is not in the process. */
int busInitialisations() {
    const auto init = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "eldbus_init"));
    const auto shutdown = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "eldbus_shutdown"));
    if (init == nullptr || shutdown == nullptr) {
        return 0;
    }
    const int count = init() - 1;
    shutdown();
    return count;
}

}  // namespace

TEST_F(ToolkitTest, SessionBringsEvasAndEcoreUpAndDownAgain) {
    {
        const ToolkitSession session;
        EXPECT_EQ(evas_init(), 2);
        evas_shutdown();
        EXPECT_GT(ecore_init(), 1);
        ecore_shutdown();
    }
    EXPECT_EQ(eina_init(), 1) << "EFL is still up";
    eina_shutdown();
}

TEST_F(ToolkitTest, HandlersOfAClientWithoutEflAreUnchanged) {
    installHandlers();
    const auto before = handlers();
    auto session = std::make_unique<ToolkitSession>();
    expectSame(before);
    session.reset();
    expectSame(before);
}

TEST_F(ToolkitTest, HandlersOfAClientWithEflAreUnchangedAndItsEflStaysUp) {
    // A client that has nothing to do with the host's message bus either.
    ASSERT_EQ(eina_init(), 1);
    ecore_app_no_system_modules();
    ASSERT_EQ(evas_init(), 1);
    installHandlers();
    const auto before = handlers();
    auto session = std::make_unique<ToolkitSession>();
    expectSame(before);
    session.reset();
    expectSame(before);
    EXPECT_EQ(evas_init(), 2) << "the client's EFL was taken down";
    evas_shutdown();
    evas_shutdown();
    eina_shutdown();
}

TEST_F(ToolkitTest, DefaultDispositionsStayDefault) {
    const auto before = handlers();
    auto session = std::make_unique<ToolkitSession>();
    expectSame(before);
    session.reset();
    expectSame(before);
}

TEST_F(ToolkitTest, SessionsCanFollowEachOther) {
    for (int i = 0; i < 3; ++i) {
        const ToolkitSession session;
        Evas* canvas = evas_new();
        EXPECT_NE(canvas, nullptr);
        evas_free(canvas);
    }
}

TEST_F(ToolkitTest, SessionNeverCallsTheMessageBus) {
    const SilentBus bus;
    {
        const ToolkitSession session;
        for (int i = 0; i < 3; ++i) {
            ecore_main_loop_iterate();
        }
        EXPECT_EQ(busInitialisations(), 0);
    }
    EXPECT_FALSE(bus.wasCalled());
}

}  // namespace vaultpad::test
