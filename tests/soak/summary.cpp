// What a soak says while it runs and at its end, and whether the memory has grown.
#include <clocale>
#include <cstdio>

#include "run.h"

namespace vaultpad::soak {

namespace {

constexpr double kMebibyte = 1024 * 1024;
// A session of the plain family leaves its hidden window behind, with its cursor; one that fails behind the grab is
// started up a second time by the show, with a second window.
constexpr double kWindowsPerSession = 2;
// What EFL takes for these windows, and what it loses each time that it comes up and goes, with a margin. Programs that
// do this and nothing else measure 110 KB for each and 1067 bytes.
constexpr double kBytesPerWindow = 150000;
constexpr double kBytesPerEflStart = 1200;
// One block is no line. Where EFL stays up, its image cache takes longer to fill.
constexpr std::size_t kSessionsToJudge = 50;
constexpr std::size_t kSessionsToFillCaches = 200;

// A session sets the locale of the process, and with it the decimal point.
void usePoint() {
    std::setlocale(LC_NUMERIC, "C");
}

}  // namespace

void SoakRun::printProgress(const Stretches& kind, const Holdings& now) const {
    usePoint();
    std::printf(
        "%5.1f min %6zu sessions (%-29s) allocated %6.2f MiB, resident %6.1f MiB, descriptors %.0f, images %.0f"
        ", threads %.0f, windows %.0f, findings %zu\n",
        minutes(), measured_, kind.name, now.allocated / kMebibyte, now.resident / kMebibyte, now.descriptors,
        now.images, now.threads, now.windows, findings_.size());
    std::fflush(stdout);
}

void SoakRun::judgeGrowth() {
    usePoint();
    for (const Stretches& kind : kinds_) {
        judgeGrowth(kind);
    }
}

void SoakRun::judgeGrowth(const Stretches& kind) {
    const double windows = kind.windows / static_cast<double>(kind.sessions);
    if (windows > (kind.family == Family::Plain ? 2 * kWindowsPerSession : 0)) {
        find(std::string(kind.name) + ": " + std::to_string(windows) + " windows per session stay");
    }
    if (kind.sessions < (kind.startsEfl ? kSessionsToJudge : kSessionsToFillCaches)) {
        std::printf("%s: too few sessions to judge the memory by\n", kind.name);
        return;
    }
    const double allowed =
        options_.bytesPerSession + windows * kBytesPerWindow + (kind.startsEfl ? kBytesPerEflStart : 0);
    const double grown = kind.allocated.perSession();
    if (options_.bytesPerSession > 0 && grown > allowed) {
        find(std::string(kind.name) + ": the allocated memory grows by " + std::to_string(grown) +
             " bytes per session, more than " + std::to_string(allowed));
    }
}

void SoakRun::printSummary() const {
    std::printf("\n%-30s %zu after warm-ups of %zu, in %.1f minutes\n", "sessions", measured_, warmUpSessions_,
                minutes());
    std::printf("%-30s %zu\n", "decrypted as typed", completed_);
    std::printf("%-30s %.1f s\n", "longest session", longestSeconds_);
    for (const auto& [what, count] : disturbances_) {
        std::printf("%-30s %zu\n", what.c_str(), count);
    }
    std::printf("\n%-30s %10s %18s %18s %18s\n", "growth", "sessions", "allocated/session", "resident/session",
                "windows/session");
    for (const Stretches& kind : kinds_) {
        std::printf("%-30s %10zu %16.0f B %16.0f B %18.2f\n", kind.name, kind.sessions, kind.allocated.perSession(),
                    kind.resident.perSession(), kind.windows / static_cast<double>(kind.sessions));
    }
    std::printf("\n%-30s %zu\n", "findings", findings_.size());
    for (const std::string& finding : findings_) {
        std::printf("  %s\n", finding.c_str());
    }
}

}  // namespace vaultpad::soak
