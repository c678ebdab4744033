// A key on its way to the trusted application and back; beside a message that crosses between two processes.
#include <sched.h>
#include <sys/socket.h>
#include <vaultpad/vaultpad.h>

#include <array>

#include "child.h"
#include "client.h"
#include "television.h"

namespace {

using namespace vaultpad::bench;

constexpr int kKeyboard = 2;

double microsecondsSince(Clock::time_point start) {
    return millisecondsSince(start) * 1000;
}

// {median, 99th percentile}
std::vector<double> quantiles(std::vector<double> samples) {
    std::sort(samples.begin(), samples.end());
    return {samples[samples.size() / 2], samples[samples.size() * 99 / 100]};
}

int rounds() {
    return runsOnce() ? 20 : 2000;
}

// A processor changes worlds by itself: no other one is woken up for the secure world, nor here for its stand-in.
void stayOnOneProcessor() {
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(sched_getcpu()), &one);
    if (sched_setaffinity(0, sizeof one, &one) != 0) {
        throw std::runtime_error("this process cannot stay on one processor");
    }
}

// {median, 99th percentile} in microseconds. No display: what a television's secure world draws is its own.
std::vector<double> pressKeys(int type) {
    stayOnOneProcessor();
    openPad(type);
    constexpr std::array<const char*, 4> kKeys = {"Right", "Down", "Left", "Up"};
    std::vector<double> samples;
    for (int i = 0; i < rounds(); ++i) {
        const Clock::time_point start = Clock::now();
        pressKey(kKeys[static_cast<std::size_t>(i) % kKeys.size()]);
        samples.push_back(microsecondsSince(start));
    }
    CsapiVPADclose();
    return quantiles(std::move(samples));
}

void answerAll(int socket) {
    char byte = 0;
    while (read(socket, &byte, 1) == 1 && write(socket, &byte, 1) == 1) {
    }
}

// The same of one byte to another process and back.
std::vector<double> crossProcesses() {
    stayOnOneProcessor();
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends) != 0) {
        throw std::runtime_error("no socket pair");
    }
    const pid_t other = fork();
    if (other == 0) {
        close(ends[0]);
        answerAll(ends[1]);
        _exit(0);
    }
    close(ends[1]);
    std::vector<double> samples;
    for (int i = 0; i < rounds(); ++i) {
        const Clock::time_point start = Clock::now();
        char byte = 0;
        if (write(ends[0], &byte, 1) != 1 || read(ends[0], &byte, 1) != 1) {
            throw std::runtime_error("the other process is gone");
        }
        samples.push_back(microsecondsSince(start));
    }
    close(ends[0]);
    waitpid(other, nullptr, 0);
    return quantiles(std::move(samples));
}

// {kilobytes that the process has grown by per thousand keys, after a first thousand}
std::vector<double> growth() {
    constexpr double kThousand = 1000;
    const int keys = runsOnce() ? 20 : 10000;
    openPad(kKeyboard);
    for (int i = 0; i < keys / 10; ++i) {
        pressKey(i % 2 == 0 ? "Right" : "Left");
    }
    const long before = residentKilobytes();
    for (int i = 0; i < keys; ++i) {
        pressKey(i % 2 == 0 ? "Right" : "Left");
    }
    const long after = residentKilobytes();
    CsapiVPADclose();
    return {static_cast<double>(after - before) * kThousand / keys};
}

void registerRoundTrip(int type, const char* name) {
    registerOnce((std::string("round trip/") + name).c_str(), [type](benchmark::State& state) {
        const std::vector<double> key = bestInChildren([type] { return pressKeys(type); });
        const std::vector<double> crossing = bestInChildren(crossProcesses);
        state.SetIterationTime(key[0] / 1e6);
        state.SetLabel("a byte to another process and back");
        state.counters["median_us"] = key[0];
        state.counters["median_us_at_most"] = 100;
        state.counters["99th_percentile_us"] = key[1];
        state.counters["ratio"] = crossing[0] / key[0];
    });
}

bool registerAll() {
    useTelevision();
    registerRoundTrip(1, "pinpad");
    registerRoundTrip(kKeyboard, "keyboard");
    registerOnce("growth", [](benchmark::State& state) {
        const double kilobytes = bestInChildren(growth, 3)[0];
        state.SetIterationTime(1e-9);
        state.SetLabel("kilobytes per thousand keys");
        state.counters["growth_kB"] = kilobytes;
        // A page or two may come from anywhere; a leak of 16 bytes per key would be 16.
        state.counters["growth_kB_at_most"] = 4;
    });
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
