/* A client of the library in a process of its own. */
#ifndef VAULTPAD_TESTS_INTEGRATION_CLIENT_PROCESS_H
#define VAULTPAD_TESTS_INTEGRATION_CLIENT_PROCESS_H

#include <sys/types.h>

#include <string>
#include <vector>

/* Killed and reaped when it goes. */
class ClientProcess {
public:
    /* The executable and its arguments. */
    explicit ClientProcess(std::vector<std::string> command);
    ~ClientProcess();
    ClientProcess(const ClientProcess&) = delete;
    ClientProcess& operator=(const ClientProcess&) = delete;

    pid_t pid() const { return pid_; }

    /* Waits for the client's next line on standard output; empty when it ended, or said nothing for half a minute. */
    std::string line();

    /* Sends a line on standard input, for a client that waits for one. */
    void proceed();

    /* Sends a signal, 0 for none, and returns the wait status. */
    int end(int signal);

private:
    pid_t pid_ = -1;
    int output_ = -1;
    int input_ = -1;
    bool reaped_ = false;
};

#endif
