/*
 * A television that does what a test says: it defines every function that the library calls on its platform.
 *
 * One per process, reset before each test. Every call is recorded, in order, as "name(arguments)"; any call can be made
 * to fail; the log is collected; what was written into the trusted application's blocks is kept as typed values.
 */
#ifndef VAULTPAD_TESTS_SUPPORT_PLATFORM_DOUBLE_H
#define VAULTPAD_TESTS_SUPPORT_PLATFORM_DOUBLE_H

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "log-line.h"

namespace vaultpad::test {

using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

/* One value of a shared-memory block: a word, a string or a blob. */
using Value = std::variant<std::uint32_t, std::string, Bytes>;
using Values = std::vector<Value>;

/* What the platform answers when nothing is made to fail. */
struct Television {
    std::optional<std::string> language = "C.UTF-8";
    std::map<std::string, int> settings; /* vconf integers; a key that is not here cannot be read */
    std::string applicationRoot = "/nonexistent";
    int uiOrientation = 0;
    bool rotatorSupported = false;
    int rotatorStatus = 1;
    bool sensorSupported = false;
    float sensorValue = 0;
    int volume = 20;
    int speaker = 0;
    int bluetoothStop = 0;
    int privilegeAnswer = 2;
    Bytes trustedUiDescription = {1, 2, 3, 4, 5};
    Strings remoteKeys = {"Return", "XF86PowerOff", "Up", "XF86LFDPowerOff", "XF86Back"};
};

/* A block that the library created. */
struct Block {
    int number; /* from 1, in order of creation */
    int type;
    std::uint32_t size;
    int inFlags;
    int outFlags;
    Values written;
    std::optional<std::uint32_t> event; /* the accepted event that carried it */
    bool released = false;
};

class PlatformDouble {
public:
    /* Back to a television without history on which everything works. */
    void reset();

    /* Makes the nth call (from 1, counted since reset) of the function fail with the code, where it returns one. */
    void fail(const std::string& function, int nth = 1, int code = -1);

    /* Makes the first to the last of its calls fail. */
    void failCalls(const std::string& function, int first, int last, int code = -1);

    Television television;

    /* What the trusted application answers to key events, front first. */
    std::deque<Value> answer;

    std::vector<std::shared_ptr<Block>> blocks;

    /* The keys that were on the list when it was last grabbed. */
    Strings grabbedKeys;

    /* Called with a function's name before each of its calls is answered. */
    std::function<void(const std::string&)> observer;

    /* Every call so far, the calls of one function, and how often it was called. */
    Strings journal() const;
    Strings callsOf(const std::string& function) const;
    int count(const std::string& function) const;
    void clearJournal();

    std::vector<LogLine> log() const;
    /* The messages of one priority, without prefix and colours. */
    Strings errors() const;
    Strings infos() const;
    void clearLog();

    /* The events that were accepted, in order. */
    std::vector<std::uint32_t> events() const;

    /* The newest block that carried the event; fails the test when there is none. */
    Block blockOf(std::uint32_t event) const;

    /* For the doubles: record a call; returns the code to fail with, if it is to fail. */
    std::optional<int> call(const std::string& function, const std::string& arguments = "");
    void addLog(LogLine line);

    /* For the doubles: handles. */
    bool isLiveContext(const void* handle) const { return handle != nullptr && handle == context.get(); }
    std::unique_ptr<int> context;
    bool sessionOpen = false;
    std::unique_ptr<int> tuiContext;

private:
    struct Failure {
        int first;
        int last;
        int code;
    };

    Strings messages(int priority) const;

    mutable std::mutex mutex_;
    Strings journal_;
    std::vector<LogLine> log_;
    std::map<std::string, int> counts_;
    std::map<std::string, std::vector<Failure>> failures_;
};

/* The double that the platform's functions report to. */
PlatformDouble& platform();

}  // namespace vaultpad::test

#endif
