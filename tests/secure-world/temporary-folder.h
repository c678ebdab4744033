// A folder that goes with the test.
#ifndef VAULTPAD_TESTS_SECURE_WORLD_TEMPORARY_FOLDER_H
#define VAULTPAD_TESTS_SECURE_WORLD_TEMPORARY_FOLDER_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace vaultpad::secureworld {

class TemporaryFolder {
public:
    TemporaryFolder() : path_(testing::TempDir() + "vaultpad-display-XXXXXX") {
        if (!mkdtemp(path_.data())) {
            throw std::runtime_error("mkdtemp");
        }
    }
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    std::string operator/(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

}  // namespace vaultpad::secureworld

#endif
