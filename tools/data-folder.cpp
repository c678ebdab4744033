#include "data-folder.h"

#include <stdexcept>

namespace vaultpad::tools {

std::filesystem::path dataFile(const std::string& name) {
    namespace fs = std::filesystem;
    const fs::path program = fs::read_symlink("/proc/self/exe");
    const fs::path file = program.parent_path().parent_path() / "share/vaultpad-layout" / name;
    if (!fs::exists(file)) {
        throw std::runtime_error(file.string() + " is missing; install vaultpad-layout again");
    }
    return file;
}

}  // namespace vaultpad::tools
