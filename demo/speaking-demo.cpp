#include "speaking-demo.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace vaultpad_demo {

namespace {

constexpr const char* kSpeakingDemo = "vaultpad-demo-voice";
constexpr const char* kPlayers[] = {"aplay", "paplay"};

}  // namespace

void becomeSpeakingDemo(char** argv) {
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe");
    if (self.filename() == kSpeakingDemo) {
        return;
    }
    const std::string speaking = self.parent_path() / kSpeakingDemo;
    execv(speaking.c_str(), argv);
    throw std::runtime_error(speaking + ": " + std::strerror(errno) +
                             "; --voice works in a build tree only, and needs the target demo: start it by ./run");
}

std::string findPlayer() {
    const char* path = std::getenv("PATH");
    for (const char* player : kPlayers) {
        std::istringstream folders(path != nullptr ? path : "");
        std::string folder;
        while (std::getline(folders, folder, ':')) {
            const std::string program = folder + "/" + player;
            if (!folder.empty() && access(program.c_str(), X_OK) == 0) {
                return std::filesystem::absolute(program).string();
            }
        }
    }
    return "";
}

}  // namespace vaultpad_demo
