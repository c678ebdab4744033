/* A development host's television for one test: a folder of its own and a key file. */
#ifndef VAULTPAD_TESTS_INTEGRATION_TELEVISION_H
#define VAULTPAD_TESTS_INTEGRATION_TELEVISION_H

#include <filesystem>
#include <map>
#include <string>

/*
 * Quiet by default: no display, the log in a file of the folder. The key file is written by apply(), which also points
 * VAULTPAD_TELEVISION at it. The folder goes with the object.
 */
class Television {
public:
    Television();
    ~Television();
    Television(const Television&) = delete;
    Television& operator=(const Television&) = delete;

    Television& set(const std::string& group, const std::string& key, const std::string& value);
    Television& unset(const std::string& group, const std::string& key);
    void apply();

    const std::filesystem::path& folder() const { return folder_; }
    std::filesystem::path frames() const { return folder_ / "frames"; }
    std::filesystem::path store() const { return folder_ / "store"; }

    /* What the library and the platform have logged so far. */
    std::string log() const;

private:
    std::filesystem::path folder_;
    std::map<std::string, std::map<std::string, std::string>> groups_;
};

#endif
