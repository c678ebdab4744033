// vaultpad-layout: what authors of layouts work with.
#include <cstdlib>
#include <iostream>

#include "check/finding.h"
#include "options.h"
#include "usage-error.h"
#include "watch.h"

namespace vaultpad::tools {

namespace {

int run(const Options& options) {
    switch (options.command) {
        case Command::Check:
            return checkFiles(options.files, options.check) == 0 ? EXIT_SUCCESS : kStatusFindings;
        case Command::Render:
            render(options.render);
            return EXIT_SUCCESS;
        case Command::Gallery:
            makeGallery(options.gallery);
            return EXIT_SUCCESS;
        case Command::Watch:
            break;
    }
    watch(options.render, options.check);
    return EXIT_SUCCESS;
}

}  // namespace

}  // namespace vaultpad::tools

int main(int argc, char** argv) {
    using namespace vaultpad::tools;
    int status = EXIT_SUCCESS;
    const std::optional<Options> options = readOptions(argc, argv, &status);
    if (!options) {
        return status;
    }
    try {
        return run(*options);
    } catch (const UsageError& error) {
        std::cerr << "vaultpad-layout: " << onOneLine(error.what()) << "\n";
        return kStatusWrongUse;
    } catch (const std::exception& error) {
        std::cerr << "vaultpad-layout: " << onOneLine(error.what()) << "\n";
        return kStatusFindings;
    }
}
