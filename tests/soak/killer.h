/* Kills a child of this process in the middle of what it does. */
#ifndef VAULTPAD_TESTS_SOAK_KILLER_H
#define VAULTPAD_TESTS_SOAK_KILLER_H

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

namespace vaultpad::soak {

/* Waits on a thread of its own, then kills the first child of the name that it meets. */
class Killer {
public:
    Killer(std::string name, std::chrono::milliseconds delay);
    ~Killer();
    Killer(const Killer&) = delete;
    Killer& operator=(const Killer&) = delete;

    /* Stops looking for a victim; true when there was one. */
    bool stop();

private:
    void run(const std::string& name, std::chrono::milliseconds delay);
    bool killOne(const std::string& name);

    std::atomic<bool> stopping_{false};
    std::atomic<bool> killed_{false};
    std::thread thread_;
};

}  // namespace vaultpad::soak

#endif
