#include "processes.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace {

constexpr std::chrono::seconds kPatience{5};

// State and parent stand behind the command name, which may hold anything but ends at the last parenthesis.
bool readStat(pid_t pid, std::string& name, char& state, pid_t& parent) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    std::string line;
    if (!std::getline(file, line)) {
        return false;
    }
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    name = line.substr(open + 1, close - open - 1);
    std::istringstream rest(line.substr(close + 1));
    rest >> state >> parent;
    return true;
}

template <typename Predicate>
std::vector<pid_t> childrenWhere(pid_t wantedParent, Predicate predicate) {
    std::vector<pid_t> pids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const std::string word = entry.path().filename().string();
        if (word.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::string name;
        char state = 0;
        pid_t parent = 0;
        const pid_t pid = std::stoi(word);
        if (readStat(pid, name, state, parent) && parent == wantedParent && predicate(name, state)) {
            pids.push_back(pid);
        }
    }
    return pids;
}

}  // namespace

std::vector<pid_t> childrenOf(pid_t parent) {
    return childrenWhere(parent, [](const std::string&, char) { return true; });
}

std::vector<pid_t> childrenNamed(pid_t parent, const std::string& name) {
    return childrenWhere(
        parent, [&name](const std::string& candidate, char state) { return candidate == name && state != 'Z'; });
}

bool endsSoon(pid_t pid) {
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < deadline) {
        std::string name;
        char state = 0;
        pid_t parent = 0;
        if (!readStat(pid, name, state, parent) || state == 'Z') {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

std::size_t zombiesOf(pid_t parent) {
    return childrenWhere(parent, [](const std::string&, char state) { return state == 'Z'; }).size();
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator descriptors("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(descriptors), end(descriptors)));
}
