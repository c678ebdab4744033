/* A file descriptor with one owner. */
#ifndef VAULTPAD_PLATFORM_HOST_UNIQUE_FD_H
#define VAULTPAD_PLATFORM_HOST_UNIQUE_FD_H

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace vaultpad::host {

class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int fd) : fd_(fd) {}
    UniqueFd(UniqueFd&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        std::swap(fd_, other.fd_);
        return *this;
    }
    ~UniqueFd() { reset(); }

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }

    /* Closes it; errno is kept, so that a failure can still be reported afterwards. */
    void reset() {
        if (fd_ >= 0) {
            const int error = errno;
            close(std::exchange(fd_, -1));
            errno = error;
        }
    }

private:
    int fd_ = -1;
};

}  // namespace vaultpad::host

#endif
