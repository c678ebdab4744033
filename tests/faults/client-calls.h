/* The calls that a client makes in one session. */
#ifndef VAULTPAD_TESTS_FAULTS_CLIENT_CALLS_H
#define VAULTPAD_TESTS_FAULTS_CLIENT_CALLS_H

#include <functional>
#include <string>
#include <vector>

#include "whole-session.h"

namespace vaultpad::test {

/* A call: fills in the result and the detail of its outcome. */
struct ClientCall {
    std::string name;
    std::function<void(StepOutcome&)> run;
};

std::vector<ClientCall> clientCalls(const SessionKind& kind);

}  // namespace vaultpad::test

#endif
