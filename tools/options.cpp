#include "options.h"

#include <vaultpad/ta-protocol.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdlib>
#include <memory>

namespace vaultpad::tools {

namespace {

constexpr const char* kExitStatus = "Exit status: 0 no findings, 1 findings or a failure, 2 wrong use.";

void addFolders(CLI::App& command, std::filesystem::path& images, std::filesystem::path& catalogues) {
    command.add_option("--images", images, "Folder of the images (default: the one that the layout names)")
        ->check(CLI::ExistingDirectory);
    command.add_option("--locale", catalogues, "Folder of the catalogues (default: locale beside the images)")
        ->check(CLI::ExistingDirectory);
}

void addKindName(CLI::App& command, std::string& kindName) {
    command.add_option("--as", kindName, "Layout file name that tells the kind of pad, for a file called otherwise");
}

void addCheckRules(CLI::App& command, CheckOptions& check) {
    command
        .add_option("--min-font", check.minFont,
                    "Font size below which a label does not fit (default: the size that the layout states)")
        ->check(CLI::PositiveNumber);
    command
        .add_option("--languages", check.languages, "Languages that labels are checked in, separated by commas, or all")
        ->delimiter(',')
        // Otherwise the files that follow would be taken for languages.
        ->allow_extra_args(false)
        ->capture_default_str();
}

void addCheck(CLI::App& tool, Options& options, std::string& area) {
    CLI::App* command = tool.add_subcommand("check", "Checks layout and voice files");
    command->add_option("FILE", options.files, "Layout or voice files")->required()->check(CLI::ExistingFile);
    addFolders(*command, options.check.images, options.check.catalogues);
    addKindName(*command, options.check.kindName);
    addCheckRules(*command, options.check);
    command->add_option("--area", area, "Size that the pad may take, WIDTHxHEIGHT (default: by the file's name)");
    command
        ->add_option("--layout", options.check.voiceLayout,
                     "Layout that a voice file speaks for (default: the plain one in ../normal)")
        ->check(CLI::ExistingFile);
    command->callback([&options] { options.command = Command::Check; });
}

void addPicture(CLI::App& command, RenderOptions& render) {
    command.add_option("FILE", render.file, "Layout file")->required()->check(CLI::ExistingFile);
    addFolders(command, render.images, render.catalogues);
    addKindName(command, render.kindName);
    command.add_option("--language", render.language, "Language or locale of the labels")->capture_default_str();
    command.add_option("--orientation", render.orientation, "How the panel is turned")
        ->check(CLI::IsMember({"landscape", "portrait", "portrait-reversed"}));
    command.add_option("--focus", render.state.focus, "Keysym of the key that has the focus");
    command.add_option("--page", render.state.page, "Page that is shown (default: main)");
    command.add_option("--typed", render.state.typed, "Number of characters in the input field")
        ->check(CLI::Range(0, static_cast<int>(VAULTPAD_TA_TEXT_MAX)));
}

void addRender(CLI::App& tool, Options& options) {
    CLI::App* command = tool.add_subcommand("render", "Draws a layout as the secure display shows it");
    addPicture(*command, options.render);
    CLI::Option_group* target = command->add_option_group("target", "Where the picture goes");
    target->add_option("-o,--output", options.render.output, "PNG file");
    target->add_flag("--terminal", options.render.terminal, "Show the picture on the terminal");
    target->require_option(1);
    command->callback([&options] { options.command = Command::Render; });
}

void addWatch(CLI::App& tool, Options& options) {
    CLI::App* command = tool.add_subcommand("watch", "Checks and draws a layout again whenever it changes");
    addPicture(*command, options.render);
    addCheckRules(*command, options.check);
    command->add_option("-o,--output", options.render.output, "PNG file")->required();
    command->callback([&options] { options.command = Command::Watch; });
}

void addGallery(CLI::App& tool, Options& options) {
    CLI::App* command = tool.add_subcommand("gallery", "Makes a page with all layouts in all languages");
    command->add_option("FILE", options.gallery.files, "Layout files (default: all of --resources)")
        ->check(CLI::ExistingFile);
    command->add_option("-o,--output", options.gallery.output, "Folder of the page")->required();
    command->add_option("--resources", options.gallery.resources, "Folder with xml, images and locale")
        ->capture_default_str();
    command->add_option("--languages", options.gallery.languages, "Languages, separated by commas (default: all)")
        ->delimiter(',')
        ->allow_extra_args(false);
    command->add_option("--reduce", options.gallery.reduction, "How many times smaller the pictures are")
        ->check(CLI::Range(1, 8))
        ->capture_default_str();
    command->add_option("--jobs", options.gallery.jobs, "Processes that draw (default: one for each processor)")
        ->check(CLI::Range(1, 64));
    command->callback([&options] { options.command = Command::Gallery; });
}

secureworld::Size sizeFrom(const std::string& text) {
    constexpr int kLongestSide = 99999;
    int width = 0;
    int height = 0;
    const char* const end = text.data() + text.size();
    const char* next = std::from_chars(text.data(), end, width).ptr;
    if (next != end && *next == 'x') {
        next = std::from_chars(next + 1, end, height).ptr;
    }
    if (next != end || width < 1 || height < 1 || width > kLongestSide || height > kLongestSide) {
        throw CLI::ValidationError("--area", "'" + text + "' is no size; write WIDTHxHEIGHT, for instance 443x486");
    }
    return {width, height};
}

void completeWatch(Options& options) {
    options.check.images = options.render.images;
    options.check.catalogues = options.render.catalogues;
    options.check.kindName = options.render.kindName;
}

}  // namespace

std::optional<Options> readOptions(int argc, char** argv, int* status) {
    Options options;
    std::string area;
    CLI::App tool("Checks and draws the pad's layouts.", "vaultpad-layout");
    tool.set_version_flag("--version", "vaultpad-layout " VAULTPAD_VERSION);
    tool.require_subcommand(1);
    tool.footer(kExitStatus);
    addCheck(tool, options, area);
    addRender(tool, options);
    addGallery(tool, options);
    addWatch(tool, options);
    try {
        tool.parse(argc, argv);
        if (!area.empty()) {
            options.check.area = sizeFrom(area);
        }
    } catch (const CLI::ParseError& error) {
        *status = tool.exit(error) == EXIT_SUCCESS ? EXIT_SUCCESS : kStatusWrongUse;
        return std::nullopt;
    }
    if (options.command == Command::Watch) {
        completeWatch(options);
    }
    return options;
}

}  // namespace vaultpad::tools
