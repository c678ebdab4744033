/* Where a part of the installation is: used by the library and by the host platform, which do not know each other. */
#ifndef VAULTPAD_COMMON_INSTALLED_PATH_H
#define VAULTPAD_COMMON_INSTALLED_PATH_H

#include <dlfcn.h>
#include <stdlib.h>

#include <string>

namespace vaultpad {

/*
 * Returns path itself when it is absolute. A relative one is meant from the folder of the program or shared library
 * that holds *anchor, so that the prefix is chosen at installation, and a build tree used like an installation.
 */
inline std::string installedPath(const void* anchor, const std::string& path) {
    Dl_info object = {};
    if (path.empty() || path.front() == '/' || dladdr(anchor, &object) == 0 || object.dli_fname == nullptr) {
        return path;
    }
    char* const resolved = realpath(object.dli_fname, nullptr);
    const std::string file = resolved != nullptr ? resolved : object.dli_fname;
    free(resolved);
    return file.substr(0, file.rfind('/') + 1) + path;
}

}  // namespace vaultpad

#endif
