#include "exception.h"

#include <gtest/gtest.h>

namespace {

using vaultpad::exception::Exception;

TEST(Exception, CopiesItsMessage) {
    std::string message = "no layout";
    const Exception fromString(message);
    const Exception fromCharacters(message.c_str());
    message.assign(message.size(), '?');
    EXPECT_STREQ(fromString.what(), "no layout");
    EXPECT_STREQ(fromCharacters.what(), "no layout");
}

TEST(Exception, IsCaughtAsAStandardException) {
    try {
        throw Exception("no layout");
    } catch (const std::exception& error) {
        EXPECT_STREQ(error.what(), "no layout");
    }
}

}  // namespace
