#include "process-state.h"

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

namespace vaultpad::secureworld {

bool hasEndedOrIsZombie(pid_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    return !std::getline(stat, line) || line.find(") Z ") != std::string::npos;
}

bool endsWithin(pid_t process, int seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        if (hasEndedOrIsZombie(process)) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

}  // namespace vaultpad::secureworld
