/* What another process has in its memory. */
#ifndef VAULTPAD_TESTS_INTEGRATION_PROCESS_MEMORY_H
#define VAULTPAD_TESTS_INTEGRATION_PROCESS_MEMORY_H

#include <sys/types.h>

#include <string>
#include <vector>

/* Everything in the process's readable mappings, one after the other, taken at once. */
class ProcessMemory {
public:
    explicit ProcessMemory(pid_t pid);

    /* Whether the process could be read at all: that of another user, or an undumpable one, only by root. */
    bool readable() const { return bytes_ > 0; }
    std::size_t bytes() const { return bytes_; }

    /* The mappings in which the bytes are found, by address and name. */
    std::vector<std::string> placesOf(const std::string& wanted) const;

private:
    struct Mapping {
        std::string name;
        std::string content;
    };
    std::vector<Mapping> mappings_;
    std::size_t bytes_ = 0;
};

#endif
