/* The fixture of every test that meets the platform's double. */
#ifndef VAULTPAD_TESTS_SUPPORT_PLATFORM_TEST_H
#define VAULTPAD_TESTS_SUPPORT_PLATFORM_TEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "efl-double.h"
#include "libc-double.h"
#include "platform-double.h"

namespace vaultpad::test {

/* Starts each test on a fresh television, and checks at its end the form of every line that was logged. */
class PlatformTest : public testing::Test {
protected:
    PlatformTest();
    ~PlatformTest() override;
};

/* A case of a parameterised test, called by its name in lists and messages. */
struct Named {
    std::string name;
};

inline std::ostream& operator<<(std::ostream& out, const Named& named) {
    return out << named.name;
}

struct CaseName {
    template <typename Case>
    std::string operator()(const testing::TestParamInfo<Case>& tested) const {
        return tested.param.name;
    }
};

}  // namespace vaultpad::test

#endif
