#include "platform-double.h"

#include <gtest/gtest.h>
#include <vaultpad-platform/dlog.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace vaultpad::test {

PlatformDouble& platform() {
    static PlatformDouble instance;
    return instance;
}

void PlatformDouble::reset() {
    const std::lock_guard<std::mutex> guard(mutex_);
    television = {};
    answer.clear();
    blocks.clear();
    grabbedKeys.clear();
    observer = nullptr;
    context.reset();
    sessionOpen = false;
    tuiContext.reset();
    journal_.clear();
    log_.clear();
    counts_.clear();
    failures_.clear();
}

void PlatformDouble::fail(const std::string& function, int nth, int code) {
    failCalls(function, nth, nth, code);
}

void PlatformDouble::failCalls(const std::string& function, int first, int last, int code) {
    failures_[function].push_back({first, last, code});
}

std::optional<int> PlatformDouble::call(const std::string& function, const std::string& arguments) {
    if (observer) {
        observer(function);
    }
    const std::lock_guard<std::mutex> guard(mutex_);
    journal_.push_back(function + "(" + arguments + ")");
    const int nth = ++counts_[function];
    for (const Failure& failure : failures_[function]) {
        if (nth >= failure.first && nth <= failure.last) {
            return failure.code;
        }
    }
    return std::nullopt;
}

Strings PlatformDouble::journal() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return journal_;
}

Strings PlatformDouble::callsOf(const std::string& function) const {
    Strings calls;
    for (const std::string& entry : journal()) {
        if (entry.compare(0, function.size() + 1, function + "(") == 0) {
            calls.push_back(entry);
        }
    }
    return calls;
}

int PlatformDouble::count(const std::string& function) const {
    return static_cast<int>(callsOf(function).size());
}

void PlatformDouble::clearJournal() {
    const std::lock_guard<std::mutex> guard(mutex_);
    journal_.clear();
}

std::vector<LogLine> PlatformDouble::log() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return log_;
}

void PlatformDouble::addLog(LogLine line) {
    const std::lock_guard<std::mutex> guard(mutex_);
    log_.push_back(std::move(line));
}

void PlatformDouble::clearLog() {
    const std::lock_guard<std::mutex> guard(mutex_);
    log_.clear();
}

Strings PlatformDouble::messages(int priority) const {
    Strings result;
    for (const LogLine& line : log()) {
        if (line.priority == priority) {
            result.push_back(line.message());
        }
    }
    return result;
}

Strings PlatformDouble::errors() const {
    return messages(VAULTPAD_DLOG_ERROR);
}

Strings PlatformDouble::infos() const {
    return messages(VAULTPAD_DLOG_INFO);
}

std::vector<std::uint32_t> PlatformDouble::events() const {
    std::vector<std::uint32_t> result;
    int counted = 0;
    for (const auto& block : blocks) {
        // Two blocks of one event follow each other; a key event has a request and an answer.
        const bool answerBlock = block->event == 2u && ++counted % 2 == 0;
        if (block->event && !answerBlock) {
            result.push_back(*block->event);
        }
    }
    return result;
}

Block PlatformDouble::blockOf(std::uint32_t event) const {
    const auto found = std::find_if(blocks.rbegin(), blocks.rend(),
                                    [event](const std::shared_ptr<Block>& block) { return block->event == event; });
    if (found == blocks.rend()) {
        ADD_FAILURE() << "no block was carried by event " << event;
        return {};
    }
    return **found;
}

}  // namespace vaultpad::test

int __dlog_print(int log_id, int priority, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, again);
    text.pop_back();
    va_end(again);
    va_end(arguments);
    vaultpad::test::platform().addLog({log_id, priority, tag, text});
    return length;
}
