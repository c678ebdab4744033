#include "options.h"

#include <CLI/CLI.hpp>
#include <string>

namespace vaultpad::secureworld {

namespace {

void checkCompleteness(const Options& options) {
    if (options.display == "png" && options.framesFolder.empty()) {
        throw CLI::ValidationError("--display png", "needs --frames, the folder for its files");
    }
    if (options.voice.output == "files" && options.voice.folder.empty()) {
        throw CLI::ValidationError("--voice files", "needs --voice-folder, the folder for its files");
    }
    if (options.voice.output == "player" && options.voice.player.empty()) {
        throw CLI::ValidationError("--voice player", "needs --voice-player, the program");
    }
}

}  // namespace

std::optional<Options> readOptions(int argc, char** argv, int* status) {
    Options options;
    CLI::App app(
        "Emulated trusted application of the protected pad. Serves one session; started by the platform's "
        "trusted-execution client.",
        "vaultpad-ta");
    app.set_version_flag("--version", "vaultpad-ta " VAULTPAD_VERSION);
    app.add_option("--channel", options.channel, "Descriptor of this end of the session's socket pair")
        ->required()
        ->check(CLI::NonNegativeNumber);
    app.add_option("--display", options.display, "Secure display: none, terminal, png or window")
        ->check(CLI::IsMember({"none", "terminal", "png", "window"}))
        ->capture_default_str();
    app.add_option("--frames", options.framesFolder, "Folder that display png writes to");
    std::string view = "pad";
    app.add_option("--view", view, "What is shown of the screen: pad, or the whole screen")
        ->check(CLI::IsMember({"pad", "screen"}))
        ->capture_default_str();
    app.add_option("--store", options.storeFolder, "Folder that the received images are written to");
    app.add_option("--voice", options.voice.output, "Where the focused keys are spoken: none, files or player")
        ->check(CLI::IsMember({"none", "files", "player"}))
        ->capture_default_str();
    app.add_option("--voice-folder", options.voice.folder, "Folder that voice files writes to");
    app.add_option("--voice-player", options.voice.player,
                   "Program of voice player; gets a WAV file on its standard input");
    app.add_option("--log", options.log, "Log: stderr, none or a file")->capture_default_str();
    try {
        app.parse(argc, argv);
        checkCompleteness(options);
    } catch (const CLI::ParseError& error) {
        *status = app.exit(error);
        return std::nullopt;
    }
    options.view = view == "pad" ? Screen::View::Pad : Screen::View::Whole;
    return options;
}

}  // namespace vaultpad::secureworld
