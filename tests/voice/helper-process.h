/* One of the helpers as the library starts it: a process that a test watches. */
#ifndef VAULTPAD_TESTS_VOICE_HELPER_PROCESS_H
#define VAULTPAD_TESTS_VOICE_HELPER_PROCESS_H

#include <fcntl.h>
#include <signal.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace vaultpad::test {

/* Runs it with both outputs in a file of the folder. Killed and reaped, when it still runs, with the object. */
class HelperProcess {
public:
    HelperProcess(const std::filesystem::path& folder, std::string program, std::vector<std::string> arguments)
        : output_(folder / "output") {
        std::vector<char*> words{program.data()};
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        pid_ = fork();
        if (pid_ == 0) {
            const int file = open(output_.c_str(), O_CREAT | O_TRUNC | O_WRONLY, 0600);
            dup2(file, STDOUT_FILENO);
            dup2(file, STDERR_FILENO);
            execv(program.c_str(), words.data());
            _exit(127);
        }
    }
    ~HelperProcess() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    HelperProcess(const HelperProcess&) = delete;
    HelperProcess& operator=(const HelperProcess&) = delete;

    pid_t pid() const { return pid_; }

    /* Waits for its end; returns its exit status, or the negative number of the signal that ended it. */
    int exitStatus() {
        int status = 0;
        waitpid(pid_, &status, 0);
        pid_ = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

    std::string output() const {
        std::ifstream file(output_);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path output_;
    pid_t pid_ = -1;
};

}  // namespace vaultpad::test

#endif
