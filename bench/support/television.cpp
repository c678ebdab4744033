#include "television.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace vaultpad::bench {

namespace {

/* Made by the first process that asks, removed when that one ends. */
class KeyFile {
public:
    KeyFile() : path_((std::filesystem::temp_directory_path() / "vaultpad-bench-XXXXXX").string()), owner_(getpid()) {
        const int file = mkstemp(path_.data());
        if (file < 0) {
            throw std::runtime_error(path_ + ": cannot be written");
        }
        close(file);
    }
    ~KeyFile() {
        if (getpid() == owner_) {
            unlink(path_.c_str());
        }
    }
    KeyFile(const KeyFile&) = delete;
    KeyFile& operator=(const KeyFile&) = delete;

    const std::string& path() const { return path_; }

private:
    std::string path_;
    pid_t owner_;
};

}  // namespace

std::string nameOf(const Look& look) {
    const std::string suffix = std::string(look.enlarged ? "e" : "") + (look.highContrast ? "h" : "");
    return std::string(look.portrait ? "vertical-" : "") + (look.mirrored ? "reverse-" : "") +
           (look.type == 1 ? "pinpad" : "keyboard") + (suffix.empty() ? "" : "-") + suffix;
}

void useTelevision(const Look& look) {
    static const KeyFile file;
    std::ofstream text(file.path());
    text << "[log]\ntarget=none\n[settings]\nfocus-zoom=" << look.enlarged << "\nhigh-contrast=" << look.highContrast
         << "\n[orientation]\nmirrored=" << (look.mirrored ? "true" : "false")
         << "\nrotator=" << (look.portrait ? "portrait" : "landscape") << "\n[secure-world]\ndisplay=none\nlog=none\n";
    if (!text.flush()) {
        throw std::runtime_error(file.path() + ": cannot be written");
    }
    setenv("VAULTPAD_TELEVISION", file.path().c_str(), 1);
}

}  // namespace vaultpad::bench
