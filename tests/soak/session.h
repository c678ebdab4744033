/* One session of a client: planned at random, run, disturbed or not, and looked at. */
#ifndef VAULTPAD_TESTS_SOAK_SESSION_H
#define VAULTPAD_TESTS_SOAK_SESSION_H

#include <map>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "client.h"
#include "pad-walk.h"
#include "television.h"

namespace vaultpad::soak {

enum class Family { KeyNames, Plain };
enum class Disturbance { None, KillTrustedApplication, KillHelper, KillVoiceMaker, FailPlatformCall };

struct Plan {
    Family family = Family::KeyNames;
    int type = VAULTPAD_TYPE_PINPAD;
    std::string rotator;
    bool mirrored = false;
    bool zoom = false;
    bool contrast = false;
    std::string language;
    int digits = 0;         /* after which a PIN pad completes by itself */
    bool wandering = false; /* random keys, instead of straight to the keys that are wanted */
    Disturbance disturbance = Disturbance::None;

    std::string text() const;
};

struct Report {
    bool disturbed = false; /* something was killed or failed that the session depends on */
    bool killed = false;
    bool completed = false; /* the text was decrypted and is what was typed */
    const char* failedCall = nullptr;
    std::vector<std::string> findings;
};

/* Runs sessions one after the other. Not to be used by two threads at once. */
class SessionRunner {
public:
    explicit SessionRunner(std::mt19937_64& random) : random_(random) {}

    Report run(Plan plan);

private:
    using LayoutKey = std::tuple<int, std::string, bool, bool, bool>;
    struct Press {
        bool taken;
        bool closed;
        unsigned int value;
    };

    void describeTelevision(const Plan& plan, const LayoutKey& layout);
    bool open(const Plan& plan);
    void use(const Plan& plan, PadWalk& walk, Report& report);
    std::optional<std::u16string> typeWantedKeys(const Plan& plan, PadWalk& walk, Report& report);
    std::optional<std::u16string> wander(const Plan& plan, PadWalk& walk, Report& report);
    bool pressWay(const std::string& way, bool closes, Report& report);
    Press press(const std::string& key);
    void checkResult(const std::u16string& typed, Report& report);
    void close(Report& report);
    int pick(int low, int high);

    std::mt19937_64& random_;
    Television television_;
    Client small_{1024};
    Client large_{2048};
    Client* client_ = &large_;
    Family family_ = Family::KeyNames;
    std::map<LayoutKey, PadWalk> walks_;
    int usualCalls_ = 1; /* of the platform, in the latest session without a failure */
};

}  // namespace vaultpad::soak

#endif
