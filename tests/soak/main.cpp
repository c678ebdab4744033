// Session after session in one client: see docs/security.md for what its figures mean, and --help.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "run.h"

namespace {

std::vector<std::string> readLanguages() {
    std::vector<std::string> locales;
    std::ifstream file(VAULTPAD_SOAK_LANGUAGES);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string language;
        std::string locale;
        if (line.rfind('#', 0) != 0 && words >> language >> locale) {
            locales.push_back(locale);
        }
    }
    if (locales.empty()) {
        throw std::runtime_error(VAULTPAD_SOAK_LANGUAGES " names no language");
    }
    return locales;
}

}  // namespace

int main(int argc, char** argv) {
    const vaultpad::soak::Options options = vaultpad::soak::readOptions(argc, argv);
    // A run that is ended from outside has said all that it found until then.
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    try {
        setenv("LOCPATH", VAULTPAD_SOAK_LOCALES, 0);
        vaultpad::compositor::CompositorProcess compositor(VAULTPAD_SOAK_COMPOSITOR);
        setenv("WAYLAND_DISPLAY", compositor.display().c_str(), 1);
        vaultpad::soak::SoakRun run(options, readLanguages(), compositor);
        return run.run() ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vaultpad-soak: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
