#include "libc-double.h"

#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform-double.h"

using vaultpad::test::libc;
using vaultpad::test::platform;

namespace vaultpad::test {

LibcDouble& libc() {
    static LibcDouble instance;
    return instance;
}

}  // namespace vaultpad::test

namespace {

constexpr const char* kLabelFile = "/proc/self/attr/current";

std::string signalName(int number) {
    return number == SIGKILL ? "SIGKILL" : number == SIGUSR2 ? "SIGUSR2" : std::to_string(number);
}

// Allocations come from the library: the doubles' hooks are left out.
#define NO_DOUBLE_HOOK __attribute__((no_instrument_function))

NO_DOUBLE_HOOK bool allocationFails() {
    const auto& observer = libc().allocationObserver;
    if (observer && observer()) {
        return true;
    }
    int& failing = libc().failingAllocation;
    return failing > 0 && --failing == 0;
}

// Abstract names are shared by the whole host: the process id makes this process's own of the zero-padded one.
socklen_t privateAddress(const sockaddr* given, socklen_t length, sockaddr_un& address) {
    std::memcpy(&address, given, std::min<std::size_t>(length, sizeof(address)));
    if (address.sun_family != AF_UNIX || address.sun_path[0] != '\0') {
        return length;
    }
    const std::string suffix = "." + std::to_string(getpid());
    std::memcpy(address.sun_path + sizeof(address.sun_path) - suffix.size(), suffix.data(), suffix.size());
    return length;
}

}  // namespace

extern "C" {

pid_t __real_fork(void);
int __real_kill(pid_t pid, int number);
sighandler_t __real_signal(int number, sighandler_t handler);
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
FILE* __real_fopen(const char* path, const char* mode);
size_t __real_fread(void* data, size_t size, size_t count, FILE* file);
int __real_usleep(useconds_t microseconds);
int __real_bind(int socket, const sockaddr* address, socklen_t length);
int __real_listen(int socket, int backlog);
int __real_accept(int socket, sockaddr* address, socklen_t* length);
ssize_t __real_recv(int socket, void* data, size_t size, int flags);
int __real_connect(int socket, const sockaddr* address, socklen_t length);
int __real_getsockopt(int socket, int level, int option, void* value, socklen_t* length);

pid_t __wrap_fork(void) {
    if (!libc().processesAreFake) {
        return __real_fork();
    }
    const auto code = platform().call("fork");
    if (code) {
        errno = EAGAIN;
        return *code;
    }
    if (libc().forks.empty()) {
        return libc().helperPid;
    }
    const pid_t pid = libc().forks.front();
    libc().forks.pop_front();
    return pid;
}

int __wrap_execl(const char* path, const char* argument, ...) {
    std::vector<char*> arguments;
    va_list list;
    va_start(list, argument);
    for (const char* next = argument; next != nullptr; next = va_arg(list, const char*)) {
        arguments.push_back(const_cast<char*>(next));
    }
    va_end(list);
    if (libc().processesAreFake) {
        std::string shown = path;
        for (const char* next : arguments) {
            shown += std::string(", ") + next;
        }
        platform().call("execl", shown);
        std::fprintf(stderr, "execl(%s)\n", shown.c_str());
        errno = ENOENT;
        return -1;
    }
    if (!libc().programInstead.empty()) {
        arguments.clear();
        for (std::string& word : libc().programInstead) {
            arguments.push_back(word.data());
        }
        path = arguments.front();
    }
    arguments.push_back(nullptr);
    return execv(path, arguments.data());
}

int __wrap_kill(pid_t pid, int number) {
    if (!libc().processesAreFake) {
        return __real_kill(pid, number);
    }
    return platform().call("kill", std::to_string(pid) + ", " + signalName(number)).value_or(0);
}

sighandler_t __wrap_signal(int number, sighandler_t handler) {
    if (libc().processesAreFake && platform().call("signal", signalName(number))) {
        errno = EINVAL;
        return SIG_ERR;
    }
    return __real_signal(number, handler);
}

NO_DOUBLE_HOOK void* __wrap_malloc(size_t size) {
    return allocationFails() ? nullptr : __real_malloc(size);
}

NO_DOUBLE_HOOK void* __wrap_calloc(size_t count, size_t size) {
    return allocationFails() ? nullptr : __real_calloc(count, size);
}

FILE* __wrap_fopen(const char* path, const char* mode) {
    if (std::strcmp(path, kLabelFile) != 0) {
        return __real_fopen(path, mode);
    }
    if (libc().securityLabelError != 0) {
        errno = libc().securityLabelError;
        return nullptr;
    }
    if (!libc().securityLabel) {
        return __real_fopen(path, mode);
    }
    FILE* file = std::tmpfile();
    std::fwrite(libc().securityLabel->data(), 1, libc().securityLabel->size(), file);
    std::rewind(file);
    return file;
}

size_t __wrap_fread(void* data, size_t size, size_t count, FILE* file) {
    return libc().freadFails ? static_cast<size_t>(-1) : __real_fread(data, size, count, file);
}

int __wrap_usleep(useconds_t microseconds) {
    if (!libc().sleepsAreFake) {
        return __real_usleep(microseconds);
    }
    platform().call("usleep", std::to_string(microseconds));
    return 0;
}

int __wrap_bind(int socket, const sockaddr* address, socklen_t length) {
    if (platform().call("bind")) {
        errno = EADDRINUSE;
        return -1;
    }
    libc().boundAddresses.emplace_back(reinterpret_cast<const char*>(address), length);
    sockaddr_un own{};
    const socklen_t ownLength = privateAddress(address, length, own);
    return __real_bind(socket, reinterpret_cast<const sockaddr*>(&own), ownLength);
}

int __wrap_listen(int socket, int backlog) {
    return platform().call("listen") ? -1 : __real_listen(socket, backlog);
}

int __wrap_accept(int socket, sockaddr* address, socklen_t* length) {
    return platform().call("accept") ? -1 : __real_accept(socket, address, length);
}

ssize_t __wrap_recv(int socket, void* data, size_t size, int flags) {
    return platform().call("recv") ? -1 : __real_recv(socket, data, size, flags);
}

int __wrap_connect(int socket, const sockaddr* address, socklen_t length) {
    sockaddr_un own{};
    const socklen_t ownLength = privateAddress(address, length, own);
    return __real_connect(socket, reinterpret_cast<const sockaddr*>(&own), ownLength);
}

int __wrap_getsockopt(int socket, int level, int option, void* value, socklen_t* length) {
    const int result = __real_getsockopt(socket, level, option, value, length);
    if (result == 0 && level == SOL_SOCKET && option == SO_PEERCRED && libc().peerUser) {
        static_cast<ucred*>(value)->uid = *libc().peerUser;
    }
    return result;
}

}  // extern "C"
