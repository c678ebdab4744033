/* A folder that goes away with the test. */
#ifndef VAULTPAD_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define VAULTPAD_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace vaultpad::test {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = testing::TempDir() + "vaultpad-XXXXXX";
        path_ = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { remove(); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    void remove() const {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::string& path() const { return path_; }

    /* Writes a file, making the folders above it. */
    void write(const std::string& relative, const std::string& text) const {
        const std::filesystem::path file = std::filesystem::path(path_) / relative;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

private:
    std::string path_;
};

}  // namespace vaultpad::test

#endif
