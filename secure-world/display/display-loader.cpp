#include "display/display-loader.h"

#include <dlfcn.h>

#include <filesystem>
#include <stdexcept>

namespace vaultpad::secureworld {

namespace {

class NoDisplay : public Display {
public:
    bool wantsPictures() const override { return false; }
    void show(const Picture&) override {}
};

// Seen from the program: the prefix is chosen at installation.
std::string displayFolder() {
    return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / VAULTPAD_DISPLAY_DIR).string();
}

}  // namespace

std::unique_ptr<Display> loadDisplay(const std::string& name, const DisplaySettings& settings) {
    if (name == "none") {
        return std::make_unique<NoDisplay>();
    }
    const std::string path = displayFolder() + "/vaultpad-display-" + name + ".so";
    // Never closed again: the display's code is needed until the process ends.
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        throw std::runtime_error("display " + name + " cannot be loaded: " + dlerror());
    }
    const auto factory = reinterpret_cast<DisplayFactory>(dlsym(module, kDisplayFactoryName));
    if (!factory) {
        throw std::runtime_error("display " + name + " cannot be loaded: " + path + " is no display");
    }
    std::string error;
    std::unique_ptr<Display> display(factory(&settings, &error));
    if (!display) {
        throw std::runtime_error("display " + name + ": " + error);
    }
    return display;
}

}  // namespace vaultpad::secureworld
