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
    int output[2];
    int input[2];
    if (pipe2(output, O_CLOEXEC) != 0) {
        return;
    }
    output_ = output[0];
    if (pipe2(input, O_CLOEXEC) != 0) {
        close(output[1]);
        return;
    }
    input_ = input[1];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
    std::vector<char*> arguments;
    for (std::string& word : command) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    if (posix_spawn(&pid_, arguments[0], &actions, nullptr, arguments.data(), environ) != 0) {
        pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(input[0]);
}

ClientProcess::~ClientProcess() {
    if (pid_ > 0 && !reaped_) {
        end(SIGKILL);
    }
    close(output_);
    close(input_);
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

void ClientProcess::proceed() {
    // A client that has ended already is noticed by its next line.
    const ssize_t written = write(input_, "\n", 1);
    (void)written;
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
