/* vaultpad-compositor: a Wayland compositor for development hosts that routes a remote control's keys. */
#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <iostream>
#include <stdexcept>

#include "compositor.h"
#include "control.h"

namespace {

using vaultpad::compositor::Compositor;
using vaultpad::compositor::Control;

struct Options {
    std::string socket;
    bool keepRunning = false;
};

constexpr const char* kHelp =
    "Commands on standard input, a line each: press NAME, release NAME, tap NAME, focus PID, list, keys.\n"
    "On standard output: 'ready SOCKET', then a line for everything that happens:\n"
    "  key NAME pressed|released PID grab|focus|nobody\n"
    "  focus PID, grab PID holds N, ungrab PID holds N, gone PID\n"
    "and behind a command's lines 'ok LINE', or 'error line NUMBER: REASON'. PID 0 is nobody.";

/* The socket is made in XDG_RUNTIME_DIR. */
std::string openSocket(wl_display* display, const std::string& wanted) {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    if (folder == nullptr || *folder == '\0') {
        throw std::runtime_error("XDG_RUNTIME_DIR is not set: name a folder of your own that holds the socket");
    }
    if (wanted.empty()) {
        const char* const name = wl_display_add_socket_auto(display);
        if (name == nullptr) {
            throw std::runtime_error(std::string(folder) +
                                     ": no Wayland socket could be made there: " + std::strerror(errno));
        }
        return name;
    }
    if (wl_display_add_socket(display, wanted.c_str()) != 0) {
        throw std::runtime_error(std::string(folder) + "/" + wanted + ": the Wayland socket could not be made: " +
                                 std::strerror(errno) + "; is another compositor using it?");
    }
    return wanted;
}

int onSignal(int, void* display) {
    wl_display_terminate(static_cast<wl_display*>(display));
    return 0;
}

int run(const Options& options) {
    /* libwayland takes the signals by a descriptor of its own. */
    signal(SIGPIPE, SIG_IGN);
    const Compositor::Say say = [](const std::string& line) {
        std::puts(line.c_str());
        std::fflush(stdout);
    };
    Compositor compositor(say);
    wl_event_loop* const loop = wl_display_get_event_loop(compositor.display());
    wl_event_source* const sources[] = {wl_event_loop_add_signal(loop, SIGTERM, onSignal, compositor.display()),
                                        wl_event_loop_add_signal(loop, SIGINT, onSignal, compositor.display())};
    const std::string socket = openSocket(compositor.display(), options.socket);
    const Control control(compositor, STDIN_FILENO, options.keepRunning, say);
    say("ready " + socket);
    wl_display_run(compositor.display());
    for (wl_event_source* const source : sources) {
        wl_event_source_remove(source);
    }
    return control.failed() ? EXIT_FAILURE : EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) try {
    Options options;
    CLI::App cli("A Wayland compositor without a screen that routes a remote control's keys.", "vaultpad-compositor");
    cli.add_option("--socket", options.socket, "Name of the socket in XDG_RUNTIME_DIR (default: the first free one)");
    cli.add_flag("--keep-running", options.keepRunning, "Go on when standard input ends");
    cli.footer(kHelp);
    CLI11_PARSE(cli, argc, argv);
    return run(options);
} catch (const std::exception& error) {
    std::cerr << "vaultpad-compositor: " << error.what() << std::endl;
    return EXIT_FAILURE;
}
