// The display terminal in the real trusted application, on a pseudo-terminal.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "channel/file-descriptor.h"
#include "sample-pads.h"
#include "ta-client.h"

namespace vaultpad::secureworld {
namespace {

// A pseudo-terminal that the trusted application gets as its controlling terminal.
class Pty {
public:
    Pty(unsigned short columns, unsigned short rows, unsigned short cell = 0) {
        winsize size = {rows, columns, static_cast<unsigned short>(columns * cell),
                        static_cast<unsigned short>(rows * cell * 2)};
        int master = -1;
        int slave = -1;
        if (openpty(&master, &slave, nullptr, nullptr, &size) != 0) {
            throw std::runtime_error("openpty");
        }
        master_ = FileDescriptor(master);
        slave_ = FileDescriptor(slave);
        fcntl(master, F_SETFL, O_NONBLOCK);
        fcntl(master, F_SETFD, FD_CLOEXEC);
        fcntl(slave, F_SETFD, FD_CLOEXEC);
        taker_ = std::thread([this] { take(); });
    }
    ~Pty() {
        ended_ = true;
        taker_.join();
    }
    Pty(const Pty&) = delete;
    Pty& operator=(const Pty&) = delete;

    TaClient::Setup setup(const std::string& kind) const {
        TaClient::Setup result;
        result.options = {"--display", "terminal"};
        result.environment = {"TERM=" + kind, "COLORTERM="};
        const int terminal = slave_.get();
        result.inChild = [terminal] {
            setsid();
            ioctl(terminal, TIOCSCTTY, 0);
        };
        return result;
    }

    void resize(unsigned short columns, unsigned short rows) {
        const winsize size = {rows, columns, 0, 0};
        ioctl(master_.get(), TIOCSWINSZ, &size);
    }

    // What has been drawn since the latest call, once nothing more comes.
    std::string drawn() {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const std::lock_guard<std::mutex> lock(mutex_);
        return std::exchange(drawn_, std::string());
    }

private:
    // A terminal takes what is written to it at any time: without this the writer would wait.
    void take() {
        char buffer[4096];
        pollfd readable = {master_.get(), POLLIN, 0};
        while (!ended_) {
            const ssize_t size = poll(&readable, 1, 20) == 1 ? read(master_.get(), buffer, sizeof(buffer)) : 0;
            const std::lock_guard<std::mutex> lock(mutex_);
            drawn_.append(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
        }
    }

    FileDescriptor master_;
    FileDescriptor slave_;
    std::mutex mutex_;
    std::string drawn_;
    std::atomic<bool> ended_ = false;
    std::thread taker_;
};

bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(TerminalDisplay, DrawsInPlaceAboveTheClientsTwoRows) {
    Pty terminal(80, 24);
    TaClient client(terminal.setup("xterm-256color"));
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    const std::string shown = terminal.drawn();
    EXPECT_TRUE(has(shown, "\x1b[?25l")) << "hides the cursor";
    EXPECT_TRUE(has(shown, "\x1b[23;24r")) << "only the last two rows scroll";
    EXPECT_TRUE(has(shown, "\x1b[1;1H"));
    EXPECT_FALSE(has(shown, "\n"));
    EXPECT_FALSE(has(shown, "\x1b[23;1H\x1b[")) << "no picture in the client's rows";
    EXPECT_TRUE(has(shown, "38;") || has(shown, "48;")) << "colours";

    press(&client, "r");
    const std::string moved = terminal.drawn();
    EXPECT_TRUE(has(moved, "\x1b[1;1H"));
    EXPECT_FALSE(has(moved, "\x1b[2J")) << "in place, without a flicker";
    EXPECT_NE(shown.substr(shown.find("\x1b[1;1H")), moved.substr(moved.find("\x1b[1;1H")));
}

// What a pad's opening looks like on a terminal of 80 x 24 characters; cell is a character's width in pixels, 0 for a
// terminal that does not tell.
std::string openingOn(const std::string& kind, const std::string& colours, unsigned short cell) {
    Pty terminal(80, 24, cell);
    TaClient::Setup setup = terminal.setup(kind);
    setup.environment.push_back("COLORTERM=" + colours);
    TaClient client(setup);
    showPad(&client);
    return terminal.drawn();
}

TEST(TerminalDisplay, DrawsInTheWayThatSuitsTheTerminal) {
    const std::string palette = openingOn("screen-256color", "", 0);
    EXPECT_TRUE(has(palette, "8;5;"));
    EXPECT_FALSE(has(palette, "8;2;"));
    EXPECT_TRUE(has(openingOn("xterm-256color", "truecolor", 0), "8;2;"));
    EXPECT_TRUE(has(openingOn("xterm-kitty", "", 0), "\x1b_G"));
    EXPECT_TRUE(has(openingOn("mlterm", "", 10), "\x1bP"));
    EXPECT_FALSE(has(openingOn("mlterm", "", 0), "\x1bP")) << "sixels need a known size of a character";
}

TEST(TerminalDisplay, FollowsTheTerminalsSizeAtTheNextPicture) {
    Pty terminal(80, 24);
    TaClient client(terminal.setup("xterm-256color"));
    ASSERT_NO_FATAL_FAILURE(showPad(&client));
    terminal.drawn();
    terminal.resize(100, 40);
    press(&client, "r");
    const std::string drawn = terminal.drawn();
    EXPECT_TRUE(has(drawn, "\x1b[2J"));
    EXPECT_TRUE(has(drawn, "\x1b[39;40r"));
}

TEST(TerminalDisplay, RestoresTheTerminalWhenThePadClosesOrTheProcessEnds) {
    for (const bool cancelled : {true, false}) {
        Pty terminal(80, 24);
        TaClient client(terminal.setup("xterm-256color"));
        ASSERT_NO_FATAL_FAILURE(showPad(&client));
        terminal.drawn();
        if (cancelled) {
            press(&client, "dddd");
            terminal.drawn();
            press(&client, "!");
        } else {
            client.closeChannel();
            EXPECT_EQ(0, client.waitForEnd());
        }
        const std::string restored = terminal.drawn();
        EXPECT_TRUE(has(restored, "\x1b[?25h")) << cancelled;
        EXPECT_TRUE(has(restored, "\x1b[r")) << cancelled;
        EXPECT_TRUE(has(restored, "\x1b[2J")) << cancelled;
    }
}

void expectRefusedTerminal(const TaClient::Setup& setup, const std::string& reason) {
    TaClient client(setup);
    EXPECT_EQ(-1, client.open());
    EXPECT_EQ(1, client.waitForEnd());
    const std::string log = client.log();
    EXPECT_TRUE(has(log, reason)) << log;
    EXPECT_EQ(1, std::count(log.begin(), log.end(), '\n')) << log;
}

TEST(TerminalDisplay, RefusesTheSessionWithoutATerminal) {
    TaClient::Setup setup;
    setup.options = {"--display", "terminal"};
    setup.environment = {"TERM=xterm-256color"};
    setup.inChild = [] { setsid(); };
    expectRefusedTerminal(setup, "there is no terminal to draw on");
}

TEST(TerminalDisplay, RefusesTheSessionOnATerminalThatCannotShowPictures) {
    Pty terminal(80, 24);
    expectRefusedTerminal(terminal.setup("dumb"), "TERM is unset or dumb");
    expectRefusedTerminal(terminal.setup(""), "TERM is unset or dumb");
}

TEST(TerminalDisplay, RefusesTheSessionOnATerminalThatIsTooSmall) {
    const Pty terminal(23, 24);
    expectRefusedTerminal(terminal.setup("xterm-256color"), "the terminal of 23 x 24 characters is smaller than");
    const Pty unknown(0, 0);
    expectRefusedTerminal(unknown.setup("xterm-256color"), "0 x 0");
}

}  // namespace
}  // namespace vaultpad::secureworld
