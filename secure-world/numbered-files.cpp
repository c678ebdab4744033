#include "numbered-files.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace vaultpad::secureworld {

namespace {

namespace fs = std::filesystem;

// The number in a file's name, 0 for a file of another kind.
unsigned numberIn(const std::string& name, const std::string& start) {
    unsigned number = 0;
    if (name.compare(0, start.size(), start) == 0) {
        std::from_chars(name.data() + start.size(), name.data() + name.size(), number);
    }
    return number;
}

}  // namespace

NumberedFiles::NumberedFiles(const std::string& folder, std::string stem) : folder_(folder), stem_(std::move(stem)) {
    std::error_code error;
    fs::create_directories(folder_, error);
    if (error) {
        throw std::runtime_error("cannot create the folder " + folder + ": " + error.message());
    }
    if (!std::ofstream(unfinished())) {
        throw std::runtime_error("cannot write to the folder " + folder + "; choose another one or its permissions");
    }
    fs::remove(unfinished(), error);
    for (fs::directory_iterator entry(folder_, error), end; entry != end; entry.increment(error)) {
        number_ = std::max(number_, numberIn(entry->path().filename().string(), stem_ + "-"));
    }
}

void NumberedFiles::publish(const std::string& ending) {
    char number[16];
    std::snprintf(number, sizeof(number), "-%04u", number_ + 1);
    std::error_code error;
    fs::rename(unfinished(), folder_ / (stem_ + number + ending), error);
    if (error) {
        throw std::runtime_error("cannot write to the folder " + folder_.string() + ": " + error.message());
    }
    ++number_;
}

}  // namespace vaultpad::secureworld
