#include "host-services.h"

#include <vaultpad-platform/dlog.h>
#include <vaultpad-platform/tzplatform-config.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <utility>

namespace vaultpad::tools {

namespace {

std::string& layoutFile() {
    static std::string file;
    return file;
}

std::vector<std::string>& loggedErrors() {
    static std::vector<std::string> errors;
    return errors;
}

// A line is "FILE: FUNCTION(LINE) > ESC[...m" + message + "ESC[0m".
std::string messageOf(const std::string& line) {
    constexpr char kEscape = '\033';
    const std::size_t colour = line.find(kEscape);
    if (colour == std::string::npos) {
        return line;
    }
    const std::size_t begin = line.find('m', colour) + 1;
    return line.substr(begin, line.rfind(kEscape) - begin);
}

}  // namespace

void answerWithLayout(std::string file) {
    layoutFile() = std::move(file);
}

std::vector<std::string> takeLoggedErrors() {
    return std::exchange(loggedErrors(), {});
}

}  // namespace vaultpad::tools

const char* tzplatform_mkpath(int, const char*) {
    return vaultpad::tools::layoutFile().c_str();
}

int __dlog_print(int, int priority, const char*, const char* format, ...) {
    if (priority != VAULTPAD_DLOG_ERROR) {
        return 0;
    }
    constexpr std::size_t kLineMax = 4096;
    std::array<char, kLineMax> line{};
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    vaultpad::tools::loggedErrors().push_back(vaultpad::tools::messageOf(line.data()));
    return length;
}
