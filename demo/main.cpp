// The demo: a pad on the development host, opened by an ordinary client of the library.
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "options.h"
#include "pad-client.h"
#include "remote-control.h"
#include "rsa-key-pair.h"
#include "speaking-demo.h"
#include "television-file.h"
#include "wayland-remote.h"

namespace vaultpad_demo {

namespace {

constexpr const char* kHelp = "Arrow keys move, Return presses, Escape leaves.";

// Writes a message into the terminal's last row, which the secure display leaves to the client.
void sayBelowThePad(const std::string& message) {
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_row == 0) {
        return;
    }
    std::printf("\033[%d;1H\033[2K%s", static_cast<int>(size.ws_row), message.c_str());
    std::fflush(stdout);
}

void clearTerminal() {
    std::printf("\033[2J\033[H");
    std::fflush(stdout);
}

// Passes keys on until the pad is done or there are none left.
bool operate(PadClient& client, RemoteControl& remote, bool drawnHere) {
    while (const std::optional<KeyPress> key = remote.next()) {
        if (key->name.empty()) {
            if (drawnHere) {
                sayBelowThePad(std::string("The remote control has no such key. ") + kHelp);
            } else {
                std::cout << "The remote control has no such key. " << kHelp << std::endl;
            }
            continue;
        }
        if (client.press(key->name)) {
            return true;
        }
        if (drawnHere) {
            sayBelowThePad(kHelp);
        }
    }
    return false;
}

int report(const Options& options, const Outcome& outcome, bool done) {
    if (options.display == "png") {
        std::cout << "Pictures of the secure display: " << std::filesystem::absolute(options.frames).string() << "\n";
    }
    if (options.voice && options.voicePlayer.empty()) {
        std::cout << "What was spoken: " << std::filesystem::absolute(options.frames).string() << "\n";
    }
    if (!outcome.completed) {
        std::cout << (done ? "The pad was left; nothing was handed over." : "The keys ended before the pad was done.")
                  << std::endl;
        return done ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    std::cout << "Encrypted session key: " << outcome.encryptedKeyLength << " bytes\n"
              << "Encrypted data: " << outcome.encryptedDataLength << " bytes\n"
              << "Decrypted text: " << outcome.text << std::endl;
    return EXIT_SUCCESS;
}

// Pictures and speech of an earlier session would pass for this one's.
void removeOldFrames(const std::string& folder) {
    std::error_code ignored;
    for (const auto& entry : std::filesystem::directory_iterator(folder, ignored)) {
        const std::string name = entry.path().filename().string();
        const std::filesystem::path kind = entry.path().extension();
        if ((name.rfind("frame-", 0) == 0 && kind == ".png") || (name.rfind("voice-", 0) == 0 && kind == ".wav")) {
            std::filesystem::remove(entry.path(), ignored);
        }
    }
}

int run(const Options& options) {
    const TelevisionFile television(options);
    RsaKeyPair key = options.rsaKey.empty() ? generateRsaKeyPair(options.rsaBits) : readRsaKeyPair(options.rsaKey);
    const bool drawnHere = options.display == "terminal";
    if (options.display == "png" || options.voice) {
        removeOldFrames(options.frames);
    }
    const std::unique_ptr<PadClient> client = makePadClient(options.family);
    std::optional<vaultpad::compositor::CompositorProcess> compositor;
    std::unique_ptr<RemoteControl> remote =
        options.keys.empty() ? makeKeyboardRemote() : makeScriptedRemote(options.keys);
    if (options.family == "plain") {
        compositor.emplace(compositorBesideThisProgram());
        remote = makeWaylandRemote(std::move(remote), *compositor);
    }
    if (drawnHere) {
        clearTerminal();
        sayBelowThePad("Opening the pad ...");
    } else if (options.keys.empty()) {
        std::cout << kHelp << std::endl;
    }
    bool done = false;
    try {
        client->open(options, key);
        if (drawnHere) {
            sayBelowThePad(kHelp);
        }
        done = operate(*client, *remote, drawnHere);
    } catch (...) {
        client->close();
        if (drawnHere) {
            clearTerminal();
        }
        throw;
    }
    client->close();
    if (drawnHere) {
        clearTerminal();
    }
    return report(options, client->collect(key), done);
}

}  // namespace

}  // namespace vaultpad_demo

int main(int argc, char** argv) {
    const bool interactive = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    int exitCode = EXIT_SUCCESS;
    const std::optional<vaultpad_demo::Options> options =
        vaultpad_demo::parseOptions(argc, argv, interactive, exitCode);
    if (!options) {
        return exitCode;
    }
    try {
        if (options->voice) {
            vaultpad_demo::becomeSpeakingDemo(argv);
        }
        return vaultpad_demo::run(*options);
    } catch (const std::exception& error) {
        std::cerr << "vaultpad-demo: " << error.what();
        if (options->log == "none") {
            std::cerr << " (--log FILE keeps the log)";
        }
        std::cerr << std::endl;
        return EXIT_FAILURE;
    }
}
