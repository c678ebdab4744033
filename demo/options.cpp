#include "options.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>

#include "speaking-demo.h"

namespace vaultpad_demo {

namespace {

constexpr int kTextMax = 40;

void declare(CLI::App& cli, Options& options, std::string& keyList) {
    cli.add_option("--type", options.type, "Kind of pad")
        ->check(CLI::IsMember({"pinpad", "keyboard"}))
        ->capture_default_str();
    cli.add_option("--pin-length", options.pinLength, "Digits that complete the PIN pad by themselves; 0: the Done key")
        ->check(CLI::Range(0, kTextMax))
        ->capture_default_str();
    cli.add_option("--orientation", options.orientation, "How the television's panel is turned")
        ->check(CLI::IsMember({"landscape", "portrait", "portrait-reversed"}))
        ->capture_default_str();
    cli.add_flag("--reverse", options.reverse, "Mirrored layout, for right-to-left interfaces");
    cli.add_flag("--focus-zoom", options.focusZoom, "Enlarged layout");
    cli.add_flag("--high-contrast", options.highContrast, "High-contrast layout");
    cli.add_option("--language", options.language, "Menu language, a locale name")->capture_default_str();
    cli.add_option("--display", options.display,
                   "Secure display: terminal (default on a terminal), png (default elsewhere), window, none")
        ->check(CLI::IsMember({"terminal", "png", "window", "none"}));
    cli.add_option("--frames", options.frames, "Folder for the pictures of --display png")->capture_default_str();
    cli.add_option("--view", options.view, "What the secure display shows: the pad, or the whole screen")
        ->check(CLI::IsMember({"pad", "screen"}))
        ->capture_default_str();
    CLI::Option* const bits = cli.add_option("--rsa-bits", options.rsaBits, "Size of the client's new RSA key")
                                  ->check(CLI::IsMember({1024, 2048}))
                                  ->capture_default_str();
    cli.add_option("--rsa-key", options.rsaKey, "The client's RSA private key, a PEM file, instead of a new one")
        ->excludes(bits);
    cli.add_option("--family", options.family,
                   "Entry points: csapi, or plain, which grabs keys through a Wayland compositor; the demo starts one")
        ->check(CLI::IsMember({"csapi", "plain"}))
        ->capture_default_str();
    cli.add_option("--keys", keyList,
                   "Keys to press instead of a person, separated by commas: Up, Down, Left, Right, Return, XF86Back; "
                   "Right*3 presses three times");
    cli.add_option("--log", options.log, "Where log lines go: stderr, none, or a file (default: none)");
    cli.add_flag(
        "--voice", options.voice,
        "Voice guide on, in a build tree only (an installed demo refuses it): on a terminal aplay or paplay plays what "
        "is spoken; elsewhere, or without them, a WAV file for every focus goes into the folder of --frames");
    cli.add_option("--store", options.store, "Folder that the trusted application writes the received images to");
}

// "Right*3" is three presses; anything but a whole number behind the star is no key.
void appendKey(const std::string& word, std::vector<std::string>& keys) {
    const std::size_t star = word.find('*');
    int times = 1;
    if (star != std::string::npos) {
        const std::string count = word.substr(star + 1);
        if (count.empty() || count.size() > 3 || count.find_first_not_of("0123456789") != std::string::npos) {
            throw CLI::ValidationError("--keys", "'" + word + "': write KEY*NUMBER, for instance Right*3");
        }
        times = std::stoi(count);
    }
    const std::string key = word.substr(0, star);
    if (key.empty()) {
        throw CLI::ValidationError("--keys", "an empty key name; write KEY,KEY,...");
    }
    keys.insert(keys.end(), static_cast<std::size_t>(times), key);
}

std::vector<std::string> splitKeys(const std::string& list) {
    std::vector<std::string> keys;
    std::istringstream words(list);
    std::string word;
    while (std::getline(words, word, ',')) {
        appendKey(word, keys);
    }
    return keys;
}

// Types 2580 and presses Done. The pad opens on its first key: 1, but BackSpace on a mirrored keyboard. Surplus presses
// at an edge do nothing, so Done, at the end of the last row, is reached without knowing the layout.
std::string defaultKeys(const Options& options) {
    const std::string towardsDone = options.reverse ? "Left*14" : "Right*14";
    const std::string done = options.pinLength == 4 ? "" : ",Down*6," + towardsDone + ",Return";
    if (options.isKeyboard()) {
        const std::string one = options.reverse ? "Right," : "";
        return one + "Right,Return,Right*3,Return,Right*3,Return,Right*2,Return" + done;
    }
    return "Right,Return,Down,Return,Down,Return,Down,Return" + done;
}

}  // namespace

std::optional<Options> parseOptions(int argc, char** argv, bool interactive, int& exitCode) {
    Options options;
    std::string keyList;
    CLI::App cli("Opens a protected PIN pad or keyboard on an emulated secure display.", "vaultpad-demo");
    declare(cli, options, keyList);
    try {
        cli.parse(argc, argv);
        options.keys = splitKeys(keyList);
    } catch (const CLI::ParseError& error) {
        exitCode = cli.exit(error);
        return std::nullopt;
    }
    if (options.display.empty()) {
        options.display = interactive ? "terminal" : "png";
    }
    if (options.voice && interactive) {
        options.voicePlayer = findPlayer();
    }
    if (options.log.empty()) {
        options.log = "none";
    }
    if (options.keys.empty() && !interactive) {
        options.keys = splitKeys(defaultKeys(options));
    }
    return options;
}

}  // namespace vaultpad_demo
