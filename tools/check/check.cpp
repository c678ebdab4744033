#include "check/check.h"

#include <vaultpad/ta-protocol.h>

#include <iostream>
#include <stdexcept>

#include "check/rules.h"
#include "child-job.h"
#include "data-folder.h"
#include "drawn-layout.h"
#include "layout-kind.h"
#include "layout.h"
#include "render.h"
#include "translated-objects.h"
#include "usage-error.h"

namespace vaultpad::tools {

namespace {

namespace fs = std::filesystem;

// The layout that a voice file speaks for when none is named: the plain one of the same pad.
fs::path layoutBeside(const fs::path& voiceFile) {
    const bool keyboard = voiceFile.filename().string().find("keyboard") != std::string::npos;
    const fs::path layout =
        fs::absolute(voiceFile).parent_path().parent_path() / "normal" / (keyboard ? "keyboard.xml" : "pinpad.xml");
    if (!fs::exists(layout)) {
        throw UsageError(voiceFile.string() + ": there is no layout " + layout.string() +
                         "; name the one that it speaks for with --layout");
    }
    return layout;
}

void checkVoiceFile(const fs::path& file, const XmlFile& xml, const CheckOptions& options, Findings* findings) {
    xml.validate(dataFile("voice.rng"), findings);
    const fs::path layoutFile = options.voiceLayout.empty() ? layoutBeside(file) : options.voiceLayout;
    Findings ofLayout;
    const XmlFile layout(layoutFile, &ofLayout);
    if (layout.root() == nullptr) {
        throw UsageError(layoutFile.string() + ": is no XML; check it first");
    }
    if (findings->empty()) {
        checkVoices(sectionsOf(*xml.root()), sectionsOf(*layout.root()), findings);
    }
}

struct DrawnFile {
    const fs::path& file;
    const LayoutSource& source;
    LayoutKind kind;
    secureworld::Size area;
};

std::vector<CheckedObject> checkedObjects(const std::vector<DrawnImage>& images, const LayoutSource& source) {
    std::map<std::string, const xmlNode*> sources;
    for (const xmlNode* object : source.objects) {
        sources[textOf(*object, "id")] = object;
    }
    std::vector<CheckedObject> objects;
    for (const DrawnImage& image : images) {
        objects.push_back({*secureworld::parseImageId(image.id), &image, sources.at(image.id)});
    }
    return objects;
}

fs::path cataloguesFor(const fs::path& images, const CheckOptions& options) {
    return options.catalogues.empty() ? cataloguesBeside(images) : options.catalogues;
}

std::vector<std::string> languagesFor(const LayoutSource& source, const CheckOptions& options) {
    if (options.languages != std::vector<std::string>{"all"}) {
        return options.languages;
    }
    const std::string named = source.imageSection != nullptr ? textOf(*source.imageSection, "basedir") : "";
    return availableLanguages(cataloguesFor(options.images.empty() ? fs::path(named) : options.images, options));
}

// In a child: draws the layout in a language and tells the findings. What does not depend on it is drawn and checked
// with the first language only.
std::string checkDrawn(const DrawnFile& drawn, const CheckOptions& options, const std::string& language, bool first) {
    const auto layout = readLayout(drawn.file, options.images);
    applyLanguage(language, cataloguesFor(layout->imageBaseDirectory(), options));
    const std::vector<DrawnImage> images =
        drawLayout(layout, VAULTPAD_TA_ORIENTATION_LANDSCAPE,
                   [&](const std::string& id) { return first || isTranslated(*layout, id); });
    const std::vector<CheckedObject> objects = checkedObjects(images, drawn.source);
    Findings findings;
    checkLabels(objects, language, options.minFont, drawn.source, &findings);
    if (first) {
        checkPlaces(objects, drawn.area, &findings);
        checkReach(objects, &findings);
        if (drawn.kind.highContrast) {
            checkContrast(objects, &findings);
        }
    }
    return findings.serialised();
}

// The area by the file's name; a size of the user's own makes the name a matter of taste.
DrawnFile drawnFile(const fs::path& file, const LayoutSource& source, const CheckOptions& options) {
    if (options.area) {
        const auto kind = layoutKindOf(options.kindName.empty() ? file : fs::path(options.kindName));
        return {file, source, kind.value_or(LayoutKind{}), *options.area};
    }
    const LayoutKind kind = kindOfPad(file, options.kindName);
    return {file, source, kind, areaOf(kind)};
}

void checkLayoutFile(const fs::path& file, const XmlFile& xml, const CheckOptions& options, Findings* findings) {
    const LayoutSource source = sectionsOf(*xml.root());
    const DrawnFile drawn = drawnFile(file, source, options);
    xml.validate(dataFile("layout.rng"), findings);
    if (!findings->empty()) {
        return;
    }
    checkReferences(source, options.images, findings);
    checkValues(source, findings);
    checkObjects(source, findings);
    if (!findings->empty()) {
        return;
    }
    bool first = true;
    for (const std::string& language : languagesFor(source, options)) {
        try {
            ChildJob job([&] { return checkDrawn(drawn, options, language, first); });
            findings->addSerialised(job.result());
        } catch (const UsageError&) {
            throw;
        } catch (const std::runtime_error& error) {
            findings->add(lineOf(*xml.root()), "draw", error.what(), "until then nothing that is drawn is checked");
            return;
        }
        first = false;
    }
}

}  // namespace

std::size_t checkFiles(const std::vector<fs::path>& files, const CheckOptions& options) {
    std::size_t count = 0;
    for (const fs::path& file : files) {
        Findings findings;
        const XmlFile xml(file, &findings);
        if (xml.root() != nullptr) {
            const bool isVoice = !sectionsOf(*xml.root()).voices.empty() || nameOf(*xml.root()) == "voice";
            (isVoice ? checkVoiceFile : checkLayoutFile)(file, xml, options, &findings);
        }
        count += findings.print(file.string(), std::cout);
    }
    std::cout.flush();
    return count;
}

}  // namespace vaultpad::tools
