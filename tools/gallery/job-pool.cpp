#include "gallery/job-pool.h"

#include <poll.h>

#include <list>

#include "child-job.h"

namespace vaultpad::tools {

namespace {

struct Running {
    ChildJob child;
    const PooledJob* job;
};

// Waits until one of the processes has finished and takes it off the list.
void finishOne(std::list<Running>& running) {
    std::vector<pollfd> sources;
    for (const Running& job : running) {
        sources.push_back({job.child.descriptor(), POLLIN, 0});
    }
    poll(sources.data(), sources.size(), -1);
    auto source = sources.begin();
    for (auto job = running.begin(); job != running.end(); ++job, ++source) {
        if (source->revents != 0) {
            job->job->finish(job->child.result());
            running.erase(job);
            return;
        }
    }
}

}  // namespace

void runJobs(const std::vector<PooledJob>& jobs, std::size_t processes) {
    std::list<Running> running;
    for (const PooledJob& job : jobs) {
        if (running.size() >= processes) {
            finishOne(running);
        }
        running.push_back({ChildJob(job.work), &job});
    }
    while (!running.empty()) {
        finishOne(running);
    }
}

}  // namespace vaultpad::tools
