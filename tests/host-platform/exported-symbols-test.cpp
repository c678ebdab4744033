/* The library's exported functions are those that the platform's headers declare. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdio.h>

#include <filesystem>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "television-fixture.h"

namespace {

std::set<std::string> declaredFunctions() {
    static const std::regex kComment("/\\*[^*]*\\*+([^/*][^*]*\\*+)*/");
    static const std::regex kFunction("(\\w+)\\s*\\([^()]*\\)\\s*(__attribute__[^;]*)?;");
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(VAULTPAD_TEST_HEADERS)) {
        const std::string text = std::regex_replace(contentOf(entry.path()), kComment, "");
        for (std::sregex_iterator match(text.begin(), text.end(), kFunction), end; match != end; ++match) {
            names.insert((*match)[1]);
        }
    }
    return names;
}

std::set<std::string> exportedSymbols() {
    const std::string command = VAULTPAD_TEST_NM " -D --defined-only --format=posix '" VAULTPAD_TEST_LIBRARY "'";
    const std::unique_ptr<FILE, decltype(&pclose)> output(popen(command.c_str(), "r"), pclose);
    std::set<std::string> names;
    char line[1024];
    while (output != nullptr && fgets(line, sizeof line, output.get()) != nullptr) {
        std::string name;
        std::istringstream(line) >> name;
        names.insert(name);
    }
    return names;
}

TEST(ExportedSymbolsTest, EqualTheDeclarationsOfThePlatformsHeaders) {
    const std::set<std::string> declared = declaredFunctions();
    EXPECT_THAT(declared, testing::IsSupersetOf({"__dlog_print", "ecore_wl2_sync", "destroy_CryptoCoreContainer"}));
    EXPECT_EQ(exportedSymbols(), declared);
}

}  // namespace
