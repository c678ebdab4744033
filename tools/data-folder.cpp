#include "data-folder.h"

#include <stdexcept>

namespace vaultpad::tools {

namespace fs = std::filesystem;

namespace {

fs::path programFolder() {
    return fs::read_symlink("/proc/self/exe").parent_path();
}

}  // namespace

std::filesystem::path installedResources() {
    return (programFolder() / VAULTPAD_RESOURCES).lexically_normal();
}

std::filesystem::path dataFile(const std::string& name) {
    const fs::path file = programFolder().parent_path() / "share/vaultpad-layout" / name;
    if (!fs::exists(file)) {
        throw std::runtime_error(file.string() + " is missing; install vaultpad-layout again");
    }
    return file;
}

}  // namespace vaultpad::tools
