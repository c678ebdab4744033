/* Several child processes at a time. */
#ifndef VAULTPAD_TOOLS_GALLERY_JOB_POOL_H
#define VAULTPAD_TOOLS_GALLERY_JOB_POOL_H

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace vaultpad::tools {

struct PooledJob {
    std::function<std::string()> work;                     /* in a child */
    std::function<void(const std::string& result)> finish; /* here, when it has finished */
};

/* Does all of them, at most `processes` at a time. Throws what the first failing one threw. */
void runJobs(const std::vector<PooledJob>& jobs, std::size_t processes);

}  // namespace vaultpad::tools

#endif
