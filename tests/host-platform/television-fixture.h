/* A television for one test: a key file in a temporary folder, and the variable that names it. */
#ifndef VAULTPAD_TESTS_HOST_PLATFORM_TELEVISION_FIXTURE_H
#define VAULTPAD_TESTS_HOST_PLATFORM_TELEVISION_FIXTURE_H

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

/* Starts without a key file, so that all defaults hold. */
class TelevisionFixture : public testing::Test {
protected:
    TelevisionFixture();
    ~TelevisionFixture() override;

    /* Writes the key file and names it in the variable. The file is a new one each time. */
    void useTelevision(const std::string& text);

    /* The same; returns what reading it prints to the standard error stream. */
    std::string problemsOf(const std::string& text);

    const std::filesystem::path& folder() const { return folder_; }
    const std::filesystem::path& file() const { return file_; }

private:
    std::filesystem::path folder_;
    std::filesystem::path file_;
};

/* Returns a file's content; a missing file fails the test. */
std::string contentOf(const std::filesystem::path& file);

#endif
