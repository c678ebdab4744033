#include "run.h"

#include <Ecore.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "processes.h"

namespace vaultpad::soak {

namespace {

constexpr std::size_t kBlock = 25;
constexpr std::size_t kFindingsShown = 20;
// A hang would otherwise only show as few sessions. A voice maker that was killed is waited for.
constexpr double kLongestSession = 60;

bool speaks() {
    return VAULTPAD_SOAK_SPEAKS != 0;
}

}  // namespace

SoakRun::SoakRun(const Options& options, std::vector<std::string> languages, compositor::CompositorProcess& compositor)
    : options_(options), languages_(std::move(languages)), compositor_(compositor), random_(options.seed) {
    std::shuffle(languages_.begin(), languages_.end(), random_);
    if (options_.languages > 0) {
        languages_.resize(std::min(options_.languages, languages_.size()));
    }
    chooseLayouts();
}

void SoakRun::chooseLayouts() {
    for (const int type : {VAULTPAD_TYPE_PINPAD, VAULTPAD_TYPE_KEYBOARD}) {
        for (const char* rotator : {"none", "landscape", "portrait", "portrait-reversed"}) {
            for (int modes = 0; modes < 8; ++modes) {
                Plan plan;
                plan.type = type;
                plan.rotator = rotator;
                plan.mirrored = (modes & 1) != 0;
                plan.zoom = (modes & 2) != 0;
                plan.contrast = (modes & 4) != 0;
                layouts_.push_back(plan);
            }
        }
    }
    std::shuffle(layouts_.begin(), layouts_.end(), random_);
    if (options_.layouts > 0) {
        layouts_.resize(std::min(options_.layouts, layouts_.size()));
    }
}

double SoakRun::minutes() const {
    return std::chrono::duration<double, std::ratio<60>>(std::chrono::steady_clock::now() - start_).count();
}

bool SoakRun::goesOn(double share) const {
    return options_.sessions > 0 ? static_cast<double>(measured_) < share * static_cast<double>(options_.sessions)
                                 : minutes() < share * options_.minutes;
}

void SoakRun::find(const std::string& what) {
    findings_.push_back(what);
    if (findings_.size() <= kFindingsShown) {
        std::printf("FINDING: %s\n", what.c_str());
    }
}

bool SoakRun::run() {
    std::printf("seed %llu: %zu layouts, %zu languages\n", static_cast<unsigned long long>(options_.seed),
                layouts_.size(), languages_.size());
    warmUp({Family::KeyNames});
    runHalf(0.5, {&kinds_[0]});
    // The first session of the plain family brings up EFL's windows for good, and its caches then stay too.
    warmUp({Family::Plain, Family::KeyNames});
    runHalf(1, {&kinds_[1], &kinds_[2]});
    judgeGrowth();
    printSummary();
    return findings_.empty();
}

void SoakRun::runHalf(double share, const std::vector<Stretches*>& kinds) {
    for (std::size_t block = 0; goesOn(share) || block < kinds.size(); ++block) {
        runBlock(*kinds[block % kinds.size()]);
    }
}

// Each layout and each language once in each family: the caches of EFL, fontconfig and libc then hold what they will.
void SoakRun::warmUp(const std::vector<Family>& families) {
    const std::size_t count = std::max(layouts_.size(), languages_.size());
    for (const Family family : families) {
        for (std::size_t i = 0; i < count; ++i) {
            Plan plan = planned(family, false);
            const Plan& layout = layouts_[i % layouts_.size()];
            plan.type = layout.type;
            plan.digits = plan.type == VAULTPAD_TYPE_PINPAD ? plan.digits : 0;
            plan.rotator = layout.rotator;
            plan.mirrored = layout.mirrored;
            plan.zoom = layout.zoom;
            plan.contrast = layout.contrast;
            plan.language = languages_[i % languages_.size()];
            runSession(plan);
            ++warmUpSessions_;
        }
    }
    lookForLeftovers();
    afterWarmUp_ = holdings();
    std::printf("warm-up: %zu sessions so far\n", warmUpSessions_);
}

Plan SoakRun::planned(Family family, bool mayBeDisturbed) {
    const auto below = [this](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
    };
    Plan plan = layouts_[below(layouts_.size())];
    plan.family = family;
    plan.language = languages_[below(languages_.size())];
    plan.digits = plan.type == VAULTPAD_TYPE_PINPAD ? static_cast<int>(below(9)) : 0;
    plan.wandering = below(3) == 0;
    plan.disturbance = mayBeDisturbed ? chooseDisturbance() : Disturbance::None;
    return plan;
}

Disturbance SoakRun::chooseDisturbance() {
    const int number = std::uniform_int_distribution<int>(0, 99)(random_);
    if (number < 10) {
        return Disturbance::KillTrustedApplication;
    }
    if (number < 20) {
        return Disturbance::KillHelper;
    }
    if (number < 35) {
        return Disturbance::FailPlatformCall;
    }
    // Rare, because the library then waits half a minute for the clips.
    return speaks() && number < 38 ? Disturbance::KillVoiceMaker : Disturbance::None;
}

// Half of a block's sessions may be disturbed, and never the last one: what it leaves is what a session may leave.
void SoakRun::runBlock(Stretches& kind) {
    const Holdings before = holdings();
    for (std::size_t i = 1; i <= kBlock; ++i) {
        runSession(planned(kind.family, i < kBlock));
    }
    lookForLeftovers();
    const Holdings now = holdings();
    kind.allocated.add(kBlock, before.allocated, now.allocated);
    kind.resident.add(kBlock, before.resident, now.resident);
    kind.sessions += kBlock;
    kind.windows += now.windows - before.windows;
    measured_ += kBlock;
    compareHoldings(now);
    printProgress(kind, now);
}

void SoakRun::runSession(Plan plan) {
    const auto start = std::chrono::steady_clock::now();
    const Report report = sessions_.run(plan);
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    longestSeconds_ = std::max(longestSeconds_, seconds);
    for (const std::string& finding : report.findings) {
        find(finding + " (" + plan.text() + ")");
    }
    if (seconds > kLongestSession) {
        find("a session takes " + std::to_string(seconds) + " seconds (" + plan.text() + ")");
    }
    completed_ += report.completed ? 1 : 0;
    if (report.failedCall != nullptr) {
        ++disturbances_[std::string("failed: ") + report.failedCall];
    } else if (report.killed) {
        ++disturbances_[plan.text().substr(plan.text().rfind(": ") + 2)];
    }
    // Volatile, so that the allocation is not optimised away.
    if (options_.leak > 0) {
        void* volatile lost = std::calloc(1, options_.leak);
        static_cast<void>(lost);
    }
    // A client with windows runs its main loop, and so the compositor is never kept waiting.
    if (plan.family == Family::Plain) {
        ecore_main_loop_iterate();
    }
}

// Living children besides the compositor, zombies, and keys that are still grabbed. One helper may have been killed too
// late to be reaped without waiting; a voice maker is never reaped by the library, so each leaves one.
void SoakRun::lookForLeftovers() {
    const std::size_t allowed = 1 + (speaks() ? warmUpSessions_ + measured_ + kBlock : 0);
    for (const pid_t child : childrenOf(getpid())) {
        if (child != compositor_.pid() && !endsSoon(child)) {
            find("process " + std::to_string(child) + " outlives its session");
        }
    }
    if (const std::size_t zombies = zombiesOf(getpid()); zombies > allowed) {
        find(std::to_string(zombies) + " zombies");
    }
    const std::vector<std::string> lines = compositor_.command("list");
    const std::string self = "client " + std::to_string(getpid()) + " ";
    for (const std::string& line : lines) {
        if (line.rfind(self, 0) == 0 && line.find(" grabs 0 ") == std::string::npos) {
            find("keys stay grabbed: " + line);
        }
    }
    // Takes what the compositor has said so far.
    if (!lines.empty()) {
        compositor_.waitFor(lines.back());
    }
}

void SoakRun::compareHoldings(const Holdings& now) {
    const auto compare = [this](const char* what, double before, double after) {
        if (after > before) {
            find("there are " + std::to_string(static_cast<int>(after - before)) + " more " + what +
                 " than after the warm-up");
        }
    };
    compare("descriptors", afterWarmUp_.descriptors, now.descriptors);
    compare("memory files", afterWarmUp_.memoryFiles, now.memoryFiles);
    compare("threads", afterWarmUp_.threads, now.threads);
}

}  // namespace vaultpad::soak
