#include "stages.h"

#include <unistd.h>

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace vaultpad::bench {

namespace {

constexpr double kMicrosecondsPerMillisecond = 1000;

/* A stage ends where the first call after the last stage's end begins, or ends, whose line contains the text. */
struct Stage {
    const char* name;
    const char* lastCall;
    bool withCall;
};

constexpr Stage kStages[] = {
    {"before the gate", "cynara_initialize", false},
    {"gate, language", "tzfw_core_initialize_context", false},
    {"session", "tzfw_core_open_session", true},
    {"helper, canvas", "display_rotator_is_supported", false},
    {"pad type", "tzplatform_mkpath vaultpad/res/xml", false},
    {"parse", "__dlog_print number of objects", false},
    {"render, pack", "tzfw_tui_create_context", false},
    {"upload", "tzfw_core_invoke_event 7", true},
    {"show", "tzfw_core_invoke_event 1", true},
};

struct Call {
    std::int64_t begin;
    std::int64_t length;
    std::string text;
};

std::vector<Call> readCalls(const std::string& path) {
    std::ifstream file(path);
    std::vector<Call> calls;
    Call call;
    while (file >> call.begin >> call.length && std::getline(file, call.text)) {
        calls.push_back(call);
    }
    return calls;
}

}  // namespace

Trace::Trace() : path_((std::filesystem::temp_directory_path() / "vaultpad-trace-XXXXXX").string()) {
    const int file = mkstemp(path_.data());
    if (file < 0) {
        throw std::runtime_error(path_ + ": cannot be written");
    }
    close(file);
    setenv("VAULTPAD_TRACE", path_.c_str(), 1);
}

Trace::~Trace() {
    unsetenv("VAULTPAD_TRACE");
    unlink(path_.c_str());
}

std::vector<double> Trace::stages(std::int64_t start) const {
    const std::vector<Call> calls = readCalls(path_);
    std::vector<double> milliseconds;
    std::size_t next = 0;
    for (const Stage& stage : kStages) {
        while (next < calls.size() && calls[next].text.find(stage.lastCall) == std::string::npos) {
            ++next;
        }
        if (next == calls.size()) {
            throw std::runtime_error(std::string("the pad was not shown: there was no ") + stage.lastCall);
        }
        const std::int64_t end = calls[next].begin + (stage.withCall ? calls[next].length : 0);
        milliseconds.push_back(static_cast<double>(end - start) / kMicrosecondsPerMillisecond);
        start = end;
    }
    return milliseconds;
}

const std::vector<std::string>& stageNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const Stage& stage : kStages) {
            all.emplace_back(stage.name);
        }
        return all;
    }();
    return names;
}

std::int64_t monotonicMicroseconds() {
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return std::int64_t{now.tv_sec} * 1000000 + now.tv_nsec / 1000;
}

}  // namespace vaultpad::bench
