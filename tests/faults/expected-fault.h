/* What the failure of one platform call makes of a session. */
#ifndef VAULTPAD_TESTS_FAULTS_EXPECTED_FAULT_H
#define VAULTPAD_TESTS_FAULTS_EXPECTED_FAULT_H

#include <cstddef>
#include <optional>
#include <string>

#include "whole-session.h"

namespace vaultpad::test {

/* How the calls of the client after the failing one fare. */
enum class After {
    AsEver,
    WithoutSession,
    WithoutChannel, /* there is a session, but none with the trusted application */
    WithoutResult   /* the text did not arrive */
};

struct Expectation {
    Strings errors;                    /* what the client's call logs in which the failure happens */
    std::optional<int> result;         /* what that call returns; else as ever */
    std::optional<std::string> detail; /* and hands out */
    After after = After::AsEver;
    std::size_t unreleased = 0; /* blocks that stay with the trusted application's context */
    bool furtherErrors = false; /* the lines are only how the errors start, and there may be others */
    bool unreadable = false;    /* the answer is decrypted into something else */
    bool abandoned = false;     /* the start-up ended while clips may still have been on their way */
    bool closedSeen = false;    /* the answer's second word was read before */
};

/* The failing call: the index in the journal of a session without failures. */
struct FailingCall {
    const SessionKind& kind;
    const Strings& journal;
    const Strings& steps; /* the client's call at each place of the journal */
    std::size_t index;

    const std::string& text() const { return journal[index]; }
    const std::string& step() const { return steps[index]; }
    std::string function() const { return text().substr(0, text().find('(')); }
    bool is(const std::string& name) const { return function() == name; }
};

Expectation expectationOf(const FailingCall& call);

/* Of the calls that carry the trusted application's events. */
std::optional<Expectation> channelExpectationOf(const FailingCall& call);

}  // namespace vaultpad::test

#endif
