/* Speech from espeak-ng, which runs as a process of its own for each utterance. */
#ifndef VAULTPAD_HELPERS_VOICE_MAKER_SYNTHESISER_H
#define VAULTPAD_HELPERS_VOICE_MAKER_SYNTHESISER_H

#include <sys/types.h>

#include <chrono>
#include <cstddef>
#include <deque>
#include <functional>
#include <list>
#include <string>
#include <vector>

#include "end-watch.h"
#include "voice-maker/speech.h"
#include "voice-maker/wave-file.h"

namespace vaultpad::helpers {

class Synthesiser {
public:
    /* Takes a finished clip; returns false when no more are wanted. */
    using Receiver = std::function<bool(std::size_t number, const Bytes& clip)>;

    /* program: espeak-ng, looked for in PATH. jobs: how many of it run at once. */
    Synthesiser(const EndWatch& watch, std::string program, std::size_t jobs);
    ~Synthesiser();
    Synthesiser(const Synthesiser&) = delete;
    Synthesiser& operator=(const Synthesiser&) = delete;

    /* What is to be spoken, with the number that the receiver gets: the first of the ways that gives speech counts. */
    void add(std::size_t number, std::vector<Utterance> ways);

    /*
     * Speaks all, and hands over each clip as soon as it is there: an empty one for what cannot be spoken, with the
     * reason on stderr. False when it was to end before, or the receiver wanted no more.
     */
    bool run(const Receiver& receiver);

private:
    struct Task {
        std::size_t number;
        std::vector<Utterance> ways;
        std::size_t way;
    };
    struct Job {
        Task task;
        pid_t process;
        int output;
        std::chrono::steady_clock::time_point deadline;
        Bytes sound;
    };

    void start(Task task);
    bool readFrom(Job& job) const;
    bool finish(Job job, const Receiver& receiver);
    bool wait();

    const EndWatch& watch_;
    const std::string program_;
    const std::size_t limit_;
    std::deque<Task> tasks_;
    std::list<Job> jobs_;
};

}  // namespace vaultpad::helpers

#endif
