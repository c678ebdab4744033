#include "client-process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

constexpr int kPatienceMilliseconds = 30000;

}  // namespace

ClientProcess::ClientProcess(std::vector<std::string> command) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) {
        return;
    }
    output_ = ends[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    std::vector<char*> arguments;
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    if (posix_spawn(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) {
        pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
}

ClientProcess::~ClientProcess() {
    if (pid_ > 0 && !reaped_) {
        end(SIGKILL);
    }
    close(output_);
}

std::string ClientProcess::line() {
    std::string text;
    char byte = 0;
    pollfd output = {output_, POLLIN, 0};
    while (poll(&output, 1, kPatienceMilliseconds) == 1 && read(output_, &byte, 1) == 1 && byte != '\n') {
        text += byte;
    }
    return text;
}

int ClientProcess::end(int signal) {
    int status = 0;
    if (signal != 0) {
        kill(pid_, signal);
    }
    waitpid(pid_, &status, 0);
    reaped_ = true;
    return status;
}
