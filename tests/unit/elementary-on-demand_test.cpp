// What the library does without the toolkit's windows.
#include <Efreet.h>
#include <Elementary.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vaultpad-platform/dlog.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

namespace {

std::vector<std::string> asked;
std::vector<std::string> logged;

// One process long, as a library is looked for once.
TEST(ElementaryThatIsNotInstalled, IsLookedForOnceSaidInTheLogAndMakesNoWindow) {
    EXPECT_THAT(asked, testing::IsEmpty()) << "before anything needed it";
    efreet_cache_disable();
    EXPECT_EQ(0, elm_init(0, nullptr));
    EXPECT_EQ(nullptr, elm_win_add(nullptr, "VaultPad", ELM_WIN_DIALOG_BASIC));
    EXPECT_EQ(nullptr, elm_bg_add(nullptr));
    elm_win_alpha_set(nullptr, EINA_TRUE);
    elm_win_resize_object_add(nullptr, nullptr);
    EXPECT_EQ(0, elm_shutdown());
    EXPECT_THAT(asked, testing::ElementsAre("libelementary.so.1"));
    EXPECT_THAT(logged, testing::ElementsAre(testing::HasSubstr("no window can be made: no-such-library.so")));
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's and the platform's names
extern "C" {

void* __real_dlopen(const char* file, int mode);
void* __wrap_dlopen(const char* file, int) {
    asked.emplace_back(file);
    return __real_dlopen("no-such-library.so", RTLD_NOW);
}

int __dlog_print(int, int, const char*, const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    logged.emplace_back(line);
    return length;
}
}
// NOLINTEND(bugprone-reserved-identifier)
