#include "television.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

Television::Television() {
    std::string name = (std::filesystem::temp_directory_path() / "vaultpad-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    folder_ = name;
    set("log", "target", (folder_ / "log").string());
    set("secure-world", "log", (folder_ / "ta-log").string());
    set("secure-world", "display", "none");
}

Television::~Television() {
    unsetenv("VAULTPAD_TELEVISION");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

Television& Television::set(const std::string& group, const std::string& key, const std::string& value) {
    groups_[group][key] = value;
    return *this;
}

Television& Television::unset(const std::string& group, const std::string& key) {
    groups_[group].erase(key);
    return *this;
}

void Television::apply() {
    const std::filesystem::path path = folder_ / "television.ini";
    std::ofstream file(path);
    for (const auto& [group, keys] : groups_) {
        file << "[" << group << "]\n";
        for (const auto& [key, value] : keys) {
            file << key << "=" << value << "\n";
        }
    }
    file.close();
    setenv("VAULTPAD_TELEVISION", path.c_str(), 1);
}

std::string Television::log() const {
    std::ostringstream text;
    text << std::ifstream(folder_ / "log").rdbuf();
    return text.str();
}
