#include <vaultpad-platform/tzplatform-config.h>

#include <string>

#include "call-guard.h"
#include "call-trace.h"
#include "installation.h"
#include "television.h"

const char* tzplatform_mkpath(int variable, const char* path) {
    const vaultpad::host::CallTrace trace(__func__, path == nullptr ? "" : path);
    if (variable != VAULTPAD_TZPLATFORM_APPLICATION_ROOT || path == nullptr) {
        return nullptr;
    }
    return vaultpad::host::orFailure(static_cast<const char*>(nullptr), [path]() {
        thread_local std::string joined;
        const auto settings = vaultpad::host::television();
        joined = settings ? settings->applicationRoot : vaultpad::host::installedApplicationRoot();
        while (!joined.empty() && joined.back() == '/') {
            joined.pop_back();
        }
        const std::string relative = path;
        const std::size_t start = relative.find_first_not_of('/');
        joined += '/' + (start == std::string::npos ? "" : relative.substr(start));
        return joined.c_str();
    });
}
