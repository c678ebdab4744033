#include "privilege-gate.h"

#include <unistd.h>
#include <vaultpad-platform/cynara.h>

#include <cerrno>
#include <cstdio>

#include "log.h"

namespace vaultpad {

namespace {

constexpr const char* kPrivilege = "http://tizen.org/privilege/internal/default/platform";
constexpr const char* kLabelFile = "/proc/self/attr/current";
constexpr std::size_t kLabelSize = 257;
constexpr std::size_t kUserSize = 16;

// Reads the caller's Smack label; a shorter one counts as no item read and is used all the same. One byte more than the
// read can fill keeps the text terminated.
bool readLabel(char (&label)[kLabelSize + 1]) {
    std::FILE* file = std::fopen(kLabelFile, "r");
    if (file == nullptr) {
        VPAD_LOG_ERROR("fopen() proc self attr current Fail(%d)", errno);
        return false;
    }
    const auto items = static_cast<long>(std::fread(label, kLabelSize, 1, file));
    std::fclose(file);
    if (items < 0) {
        VPAD_LOG_ERROR("fread() smack_label Fail(%d)", static_cast<int>(items));
        return false;
    }
    return true;
}

}  // namespace

int check_vpad_api_privilege() {
    cynara* handle = nullptr;
    const int error = cynara_initialize(&handle, nullptr);
    if (error != 0) {
        VPAD_LOG_ERROR("cynara_initialize() Fail(%d)", error);
        return 0;
    }
    char label[kLabelSize + 1] = {};
    bool allowed = false;
    if (readLabel(label)) {
        char user[kUserSize];
        std::snprintf(user, sizeof(user), "%d", static_cast<int>(getuid()));
        allowed = cynara_check(handle, label, "", user, kPrivilege) == VAULTPAD_CYNARA_ALLOWED;
    }
    cynara_finish(handle);
    return allowed ? 1 : 0;
}

}  // namespace vaultpad
