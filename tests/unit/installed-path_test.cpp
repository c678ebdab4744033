// Where the library looks for what is installed with it.
#include <common/installed-path.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace vaultpad::test {

namespace {

const char kHere = 0;

}  // namespace

TEST(InstalledPath, AbsolutePathIsTakenAsItIs) {
    EXPECT_EQ(installedPath(&kHere, "/usr/apps/vaultpad/vault-pad-bg"), "/usr/apps/vaultpad/vault-pad-bg");
}

TEST(InstalledPath, RelativePathIsMeantFromTheFolderOfTheProgramWithTheAnchor) {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(installedPath(&kHere, "../lib/x"), (program.parent_path() / "../lib/x").string());
}

TEST(InstalledPath, RelativePathIsMeantFromTheFolderOfTheLibraryWithTheAnchor) {
    Dl_info libc = {};
    ASSERT_NE(dladdr(reinterpret_cast<const void*>(&::fopen), &libc), 0);
    const std::filesystem::path folder = std::filesystem::canonical(libc.dli_fname).parent_path();
    EXPECT_EQ(installedPath(libc.dli_fbase, "x"), (folder / "x").string());
}

TEST(InstalledPath, AddressOfNoLibraryLeavesThePathAlone) {
    EXPECT_EQ(installedPath(nullptr, "x"), "x");
}

}  // namespace vaultpad::test
