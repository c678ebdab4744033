// The calls that carry the trusted application's events.
#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <array>

#include "expected-fault.h"

namespace vaultpad::test {

namespace {

constexpr const char* kNotSent = "failed to send data to TA, ret: -1";
constexpr const char* kInvoke = "tzfw_core_invoke_event(";

std::string before(const std::string& text, char end) {
    return text.substr(0, text.find(end));
}

/* What belongs to one event in the journal: from behind the event before, to the last call about it. */
struct Event {
    int number;
    std::size_t first;  /* its first block's creation */
    std::size_t invoke; /* the call that sends it */
};

std::optional<Event> eventOf(const FailingCall& call) {
    const auto isInvoke = [&call](std::size_t i) { return call.journal[i].compare(0, 23, kInvoke) == 0; };
    std::size_t invoke = call.index;
    if (call.is("tzfw_core_read_uint") || call.is("tzfw_core_read_blob")) {
        while (!isInvoke(invoke)) {
            --invoke;
        }
    } else {
        while (invoke < call.journal.size() && !isInvoke(invoke)) {
            ++invoke;
        }
    }
    if (invoke == call.journal.size()) {
        return std::nullopt;
    }
    std::size_t first = invoke;
    while (first > 0 && !isInvoke(first - 1) && call.steps[first - 1] == call.steps[invoke]) {
        --first;
    }
    while (call.journal[first].compare(0, 30, "tzfw_core_create_shared_memory") != 0) {
        ++first;
    }
    return Event{std::stoi(call.journal[invoke].substr(23)), first, invoke};
}

/* How many calls of the failing one's function the event had up to it. */
std::size_t nthInEvent(const FailingCall& call, const Event& event) {
    std::size_t nth = 0;
    for (std::size_t i = event.first; i <= call.index; ++i) {
        nth += before(call.journal[i], '(') == call.function() ? 1u : 0u;
    }
    return nth;
}

std::string settingError(const FailingCall& call, std::size_t nth) {
    constexpr std::array<const char*, 8> names = {"t_type",  "t_extra",      "isEnlarge", "isHighcontrast",
                                                  "t_oMode", "orientation_", "base_x",    "base_y"};
    const std::string value = call.text().substr(call.text().find(", ") + 2);
    return std::string(names.at(nth - 1)) + " : " + before(value, ')');
}

std::string imageError(const FailingCall& call, const Event& event, std::size_t nth) {
    if (call.is("tzfw_core_write_uint") && nth == 1) {
        return "tzfw_core_write_uint() fail";
    }
    std::string name;
    for (std::size_t i = event.first; i <= call.index; ++i) {
        if (call.journal[i].compare(0, 22, "tzfw_core_write_string") == 0) {
            name = before(call.journal[i].substr(call.journal[i].find(", ") + 2), ')');
        }
    }
    return name + " / " + call.function() + "() fail";
}

Strings errorsOf(const FailingCall& call, const Event& event, std::size_t nth) {
    const std::string plain = call.function() + "() fail";
    const bool isWrite = call.function().compare(0, 15, "tzfw_core_write") == 0;
    switch (event.number) {
        case VAULTPAD_TA_EVENT_IME_TYPE:
            return {isWrite ? settingError(call, nth) : plain};
        case VAULTPAD_TA_EVENT_RENDER_CONTEXT:
            return {call.function() + " fail;;", "initRenderContext() fail", kNotSent};
        case VAULTPAD_TA_EVENT_IMAGE_DATA:
            return {isWrite ? imageError(call, event, nth) : plain, kNotSent};
        case VAULTPAD_TA_EVENT_IMAGE_DONE:
            return {plain, "Failed to send_image_done()", kNotSent};
        case VAULTPAD_TA_EVENT_VOICE_DATA:
            return {plain, "Failed to send_voice_data()", kNotSent};
        case VAULTPAD_TA_EVENT_SHOW:
            return {plain, "failed to show vaultpad, ret: -1"};
        default:
            return {plain};
    }
}

std::size_t unreleased(const FailingCall& call, const Event& event, std::size_t nth) {
    const bool creation = call.is("tzfw_core_create_shared_memory");
    switch (event.number) {
        case VAULTPAD_TA_EVENT_RENDER_CONTEXT:
        case VAULTPAD_TA_EVENT_IMAGE_DONE:
        case VAULTPAD_TA_EVENT_SHOW:
            return 0;
        case VAULTPAD_TA_EVENT_KEY:
            return creation ? nth - 1 : 2;
        default:
            return creation ? 0 : 1;
    }
}

/* A key that fails tells a client of the key-name family that the pad is closed. */
void expectFailedKey(const FailingCall& call, Expectation& expected, std::size_t nth) {
    expected.result = -1;
    if (!call.kind.plainFamily) {
        expected.detail = "0 1";
    }
    if (call.step() == "Return") {
        expected.after = After::WithoutResult;
        expected.closedSeen = call.is("tzfw_core_read_blob") || (call.is("tzfw_core_read_uint") && nth > 2);
    }
}

}  // namespace

std::optional<Expectation> channelExpectationOf(const FailingCall& call) {
    Expectation expected;
    if (call.is("tzfw_tui_create_context")) {
        expected.errors = {"tzfw_tui_create_context fail;;", "initRenderContext() fail", kNotSent};
        return expected;
    }
    if (call.is("tzfw_tui_get_gp_info")) {
        expected.errors = {"tzfw_tui_get_gp_info;", "initRenderContext() fail", kNotSent};
        return expected;
    }
    const bool carries = call.is("tzfw_core_create_shared_memory") || call.is("tzfw_core_invoke_event") ||
                         call.function().compare(0, 15, "tzfw_core_write") == 0 ||
                         call.function().compare(0, 14, "tzfw_core_read") == 0;
    const std::optional<Event> event = carries ? eventOf(call) : std::nullopt;
    if (!event) {
        return std::nullopt;
    }
    const std::size_t nth = nthInEvent(call, *event);
    expected.errors = errorsOf(call, *event, nth);
    expected.unreleased = unreleased(call, *event, nth);
    if (event->number == VAULTPAD_TA_EVENT_KEY) {
        expectFailedKey(call, expected, nth);
    } else if (event->number == VAULTPAD_TA_EVENT_PUBLIC_KEY) {
        expected.result = -1;
    }
    return expected;
}

}  // namespace vaultpad::test
