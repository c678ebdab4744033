// A voice player that writes down what it is given instead of playing it: NUMBER.wav, its standard input, and then
// NUMBER.txt, its process id, arguments, open files and blocked and ignored signals, both in the folder that
// VAULTPAD_TEST_PLAYER_FOLDER names. It ends with the status VAULTPAD_TEST_PLAYER_STATUS, or, without one, never.
#include <dirent.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

// Before anything else is opened.
std::vector<int> openFiles() {
    std::vector<int> result;
    DIR* folder = opendir("/proc/self/fd");
    while (const dirent* entry = readdir(folder)) {
        const int number = std::atoi(entry->d_name);
        if (entry->d_name[0] != '.' && number != dirfd(folder)) {
            result.push_back(number);
        }
    }
    closedir(folder);
    std::sort(result.begin(), result.end());
    return result;
}

std::string changedSignals() {
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    std::string result;
    for (int number = 1; number < SIGRTMIN; ++number) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (sigismember(&blocked, number) == 1 || action.sa_handler == SIG_IGN) {
            result += " " + std::to_string(number);
        }
    }
    return result;
}

std::string nextName(const std::string& folder) {
    int number = 1;
    while (mkdir((folder + "/" + std::to_string(number)).c_str(), 0700) != 0) {
        ++number;
    }
    return folder + "/" + std::to_string(number);
}

}  // namespace

int main(int argc, char**) {
    const std::vector<int> files = openFiles();
    const std::string name = nextName(std::getenv("VAULTPAD_TEST_PLAYER_FOLDER"));
    std::ofstream(name + ".wav", std::ios::binary) << std::cin.rdbuf();
    std::ofstream text(name + ".new");
    text << getpid() << "\narguments " << argc - 1 << "\nfiles";
    for (const int file : files) {
        text << ' ' << file;
    }
    text << "\nsignals" << changedSignals() << '\n';
    text.close();
    std::filesystem::rename(name + ".new", name + ".txt");
    if (const char* status = std::getenv("VAULTPAD_TEST_PLAYER_STATUS")) {
        return std::atoi(status);
    }
    for (;;) {
        pause();
    }
}
