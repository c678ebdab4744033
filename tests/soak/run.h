/* A soak: blocks of sessions, and what the process holds before and after each. */
#ifndef VAULTPAD_TESTS_SOAK_RUN_H
#define VAULTPAD_TESTS_SOAK_RUN_H

#include <array>
#include <chrono>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "compositor/compositor-process.h"
#include "growth.h"
#include "options.h"
#include "session.h"

namespace vaultpad::soak {

class SoakRun {
public:
    /* languages: the names of locales. The compositor is announced to the library. */
    SoakRun(const Options& options, std::vector<std::string> languages, compositor::CompositorProcess& compositor);

    /* Runs it, prints progress and a summary. Returns true when there was no finding. */
    bool run();

private:
    /* A kind of stretch: in the first half EFL comes up and goes with each session, in the second it stays up. */
    struct Stretches {
        const char* name;
        Family family;
        bool startsEfl; /* each session brings it up */
        Growth allocated;
        Growth resident;
        std::size_t sessions = 0;
        double windows = 0;
    };

    void chooseLayouts();
    void warmUp(const std::vector<Family>& families);
    void runHalf(double share, const std::vector<Stretches*>& kinds);
    void runBlock(Stretches& kind);
    void runSession(Plan plan);
    Plan planned(Family family, bool mayBeDisturbed);
    Disturbance chooseDisturbance();
    void lookForLeftovers();
    void compareHoldings(const Holdings& now);
    bool goesOn(double share) const;
    void printProgress(const Stretches& kind, const Holdings& now) const;
    void judgeGrowth();
    void judgeGrowth(const Stretches& kind);
    void printSummary() const;
    void find(const std::string& what);
    double minutes() const;

    Options options_;
    std::vector<std::string> languages_;
    compositor::CompositorProcess& compositor_;
    std::mt19937_64 random_;
    SessionRunner sessions_{random_};
    std::vector<Plan> layouts_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    Holdings afterWarmUp_;
    std::array<Stretches, 3> kinds_ = {{{"key names, EFL comes and goes", Family::KeyNames, true, {}, {}, 0, 0},
                                        {"key names, EFL stays up", Family::KeyNames, false, {}, {}, 0, 0},
                                        {"plain", Family::Plain, false, {}, {}, 0, 0}}};
    std::size_t warmUpSessions_ = 0;
    std::size_t measured_ = 0;
    std::size_t completed_ = 0;
    std::map<std::string, std::size_t> disturbances_; /* by what was killed or failed */
    std::vector<std::string> findings_;
    double longestSeconds_ = 0;
};

}  // namespace vaultpad::soak

#endif
