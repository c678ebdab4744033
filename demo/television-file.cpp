#include "television-file.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace vaultpad_demo {

namespace {

constexpr const char* kVariable = "VAULTPAD_TELEVISION";

// A relative path means the demo's folder, whatever folder the services run in.
std::string fileOrWord(const std::string& value) {
    if (value == "stderr" || value == "none") {
        return value;
    }
    return std::filesystem::absolute(value).string();
}

std::string soundGroup(const Options& options) {
    if (!options.voice) {
        return "";
    }
    if (!options.voicePlayer.empty()) {
        return "[sound]\nvoice=player\nvoice-player=" + options.voicePlayer + "\n\n";
    }
    return "[sound]\nvoice=files\nvoice-folder=" + std::filesystem::absolute(options.frames).string() + "\n\n";
}

std::string keyFile(const Options& options) {
    std::ostringstream text;
    text << "[log]\ntarget=" << fileOrWord(options.log) << "\n\n"
         << "[settings]\nlanguage=" << options.language << "\nfocus-zoom=" << options.focusZoom
         << "\nhigh-contrast=" << options.highContrast << "\n\n"
         << "[orientation]\nmirrored=" << (options.reverse ? "true" : "false") << "\nrotator=" << options.orientation
         << "\n\n"
         << soundGroup(options) << "[secure-world]\ndisplay=" << options.display << "\nview=" << options.view
         << "\nlog=" << fileOrWord(options.log) << "\n";
    if (options.display == "png") {
        text << "frames=" << std::filesystem::absolute(options.frames).string() << "\n";
    }
    if (!options.store.empty()) {
        text << "store=" << std::filesystem::absolute(options.store).string() << "\n";
    }
    return text.str();
}

}  // namespace

TelevisionFile::TelevisionFile(const Options& options)
    : path_((std::filesystem::temp_directory_path() / "vaultpad-television-XXXXXX").string()) {
    const int file = mkstemp(path_.data());
    if (file < 0) {
        throw std::runtime_error(path_ + ": " + std::strerror(errno));
    }
    const std::string text = keyFile(options);
    const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    if (!written) {
        unlink(path_.c_str());
        throw std::runtime_error(path_ + ": cannot be written");
    }
    setenv(kVariable, path_.c_str(), 1);
    // A list of languages for messages, as desktops set it, would win over the television's one language.
    unsetenv("LANGUAGE");
}

TelevisionFile::~TelevisionFile() {
    unlink(path_.c_str());
}

}  // namespace vaultpad_demo
