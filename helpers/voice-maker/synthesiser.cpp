#include "voice-maker/synthesiser.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>

#include "voice-message.h"

namespace vaultpad::helpers {

namespace {

constexpr std::chrono::seconds kPatience{5};
constexpr int kNotRun = 127;
// A twentieth of a second; some voices answer a character that they do not know with less.
constexpr std::size_t kShortestClip = 44 + 2 * 22050 / 20;

// In the child. Utterances end with the voice maker, which has one thread, so the kernel's signal can be relied on.
[[noreturn]] void becomeSpeaker(const std::string& program, const Utterance& utterance, int output) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int nothing = open("/dev/null", O_RDWR);
    dup2(nothing, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(nothing, STDERR_FILENO);
    // UTF-8, markup, no pause at the end.
    execlp(program.c_str(), program.c_str(), "-b", "1", "-m", "-z", "-v", utterance.voice.c_str(), "--stdout", "--",
           utterance.markup.c_str(), static_cast<char*>(nullptr));
    _exit(kNotRun);
}

}  // namespace

Synthesiser::Synthesiser(const EndWatch& watch, std::string program, std::size_t jobs)
    : watch_(watch), program_(std::move(program)), limit_(jobs) {}

Synthesiser::~Synthesiser() {
    for (const Job& job : jobs_) {
        close(job.output);
        kill(job.process, SIGKILL);
        waitpid(job.process, nullptr, 0);
    }
}

void Synthesiser::add(std::size_t number, std::vector<Utterance> ways) {
    tasks_.push_back({number, std::move(ways), 0});
}

bool Synthesiser::run(const Receiver& receiver) {
    for (;;) {
        while (!tasks_.empty() && jobs_.size() < limit_) {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            start(std::move(task));
        }
        if (jobs_.empty()) {
            return true;
        }
        if (!wait()) {
            return false;
        }
        for (auto job = jobs_.begin(); job != jobs_.end();) {
            const auto next = std::next(job);
            if (!readFrom(*job)) {
                Job finished = std::move(*job);
                jobs_.erase(job);
                if (!finish(std::move(finished), receiver)) {
                    return false;
                }
            }
            job = next;
        }
    }
}

void Synthesiser::start(Task task) {
    int ends[2] = {-1, -1};
    const bool piped = pipe2(ends, O_CLOEXEC | O_NONBLOCK) == 0;
    const pid_t process = piped ? fork() : -1;
    if (process == 0) {
        // The speaker writes as to any file.
        fcntl(ends[1], F_SETFL, 0);
        becomeSpeaker(program_, task.ways[task.way], ends[1]);
    }
    if (process < 0) {
        std::fprintf(stderr, "vault-voice-maker: %s cannot be started: %s\n", program_.c_str(), std::strerror(errno));
    }
    if (piped) {
        close(ends[1]);
    }
    jobs_.push_back({std::move(task), process, ends[0], std::chrono::steady_clock::now() + kPatience, {}});
}

// Waits until a speaker has said something or is late; false when it is time to end.
bool Synthesiser::wait() {
    std::vector<pollfd> descriptors;
    auto deadline = jobs_.front().deadline;
    for (const Job& job : jobs_) {
        descriptors.push_back({job.output, POLLIN, 0});
        deadline = std::min(deadline, job.deadline);
        // Nothing to wait for.
        if (job.process < 0) {
            return true;
        }
    }
    const auto ends = watch_.descriptors();
    descriptors.insert(descriptors.end(), ends.begin(), ends.end());
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    poll(descriptors.data(), descriptors.size(), static_cast<int>(std::max<std::int64_t>(left.count(), 0)));
    return !watch_.endsWithin(std::chrono::milliseconds(0));
}

// Returns false when the speaker has ended, is late, or says more than a clip can hold: then without its sound.
bool Synthesiser::readFrom(Job& job) const {
    std::uint8_t bytes[65536];
    ssize_t got = 0;
    while (job.process > 0 && (got = read(job.output, bytes, sizeof(bytes))) > 0) {
        job.sound.insert(job.sound.end(), bytes, bytes + got);
        if (job.sound.size() > audio::kVoiceClipCapacity) {
            job.sound.clear();
            return false;
        }
    }
    if (got < 0 && (errno == EAGAIN || errno == EINTR)) {
        if (std::chrono::steady_clock::now() < job.deadline) {
            return true;
        }
        job.sound.clear();
    }
    return false;
}

bool Synthesiser::finish(Job job, const Receiver& receiver) {
    close(job.output);
    int status = -1;
    if (job.process > 0) {
        if (job.sound.empty()) {
            kill(job.process, SIGKILL);
        }
        waitpid(job.process, &status, 0);
    }
    std::optional<Bytes> clip;
    if (status == 0) {
        clip = completeWave(std::move(job.sound));
    }
    if (clip && clip->size() >= kShortestClip) {
        return receiver(job.task.number, *clip);
    }
    const bool missing = job.process > 0 && WIFEXITED(status) && WEXITSTATUS(status) == kNotRun;
    if (!missing && job.task.way + 1 < job.task.ways.size()) {
        ++job.task.way;
        tasks_.push_front(std::move(job.task));
        return true;
    }
    std::fprintf(stderr, "vault-voice-maker: \"%s\" stays silent: %s\n", job.task.ways[job.task.way].markup.c_str(),
                 missing ? "espeak-ng cannot be run; install the package espeak-ng" : "espeak-ng does not speak it");
    return receiver(job.task.number, {});
}

}  // namespace vaultpad::helpers
