#include <set>

#include "check/rules.h"

namespace vaultpad::tools {

namespace {

namespace fs = std::filesystem;

std::set<std::string> idsOf(const std::vector<const xmlNode*>& items) {
    std::set<std::string> ids;
    for (const xmlNode* item : items) {
        ids.insert(textOf(*item, "id"));
    }
    return ids;
}

struct Ids {
    std::set<std::string> fonts;
    std::set<std::string> images;
    std::set<std::string> strings;
};

void checkTarget(const xmlNode& object, const Ids& ids, Findings* findings) {
    const bool isImage = textOf(object, "type") == "image";
    const std::string ref = textOf(object, "ref");
    if ((isImage ? ids.images : ids.strings).count(ref) == 0) {
        const char* kind = isImage ? "image" : "string";
        findings->add(lineOf(object), "ref", std::string("there is no ") + kind + " '" + ref + "'",
                      std::string("add the ") + kind + " or name one that is there");
    }
    if (isImage) {
        return;
    }
    const auto font = attributeOf(object, "font");
    if (!font || ids.fonts.count(*font) == 0) {
        findings->add(lineOf(object), "font", font ? "there is no font '" + *font + "'" : "a text without a font",
                      "name one of the layout's fonts");
    }
}

void checkImageFile(const xmlNode& image, const fs::path& folder, Findings* findings) {
    const std::string url = textOf(image, "url");
    std::error_code ignored;
    if (url.empty() || !fs::is_regular_file(folder / url, ignored)) {
        findings->add(lineOf(image), "image", "there is no image file " + (folder / url).string(),
                      "add the file or mend \"url\"");
    }
}

void checkImageFiles(const LayoutSource& source, const fs::path& images, Findings* findings) {
    if (source.imageSection == nullptr) {
        return;
    }
    const fs::path folder = images.empty() ? fs::path(textOf(*source.imageSection, "basedir")) : images;
    std::error_code ignored;
    const bool exists = fs::is_directory(folder, ignored);
    if (!exists) {
        findings->add(lineOf(*source.imageSection), "image", "there is no folder '" + folder.string() + "'",
                      "name the folder of the images with --images");
        return;
    }
    for (const xmlNode* image : source.images) {
        if (textOf(*image, "type") == "file") {
            checkImageFile(*image, folder, findings);
        }
    }
}

}  // namespace

void checkUnique(const std::vector<const xmlNode*>& items, Findings* findings) {
    std::map<std::string, int> lines;
    for (const xmlNode* item : items) {
        const auto id = attributeOf(*item, "id");
        if (!id) {
            continue;
        }
        const auto [earlier, isNew] = lines.emplace(*id, lineOf(*item));
        if (!isNew) {
            findings->add(lineOf(*item), "duplicate-id",
                          "'" + *id + "' is in line " + std::to_string(earlier->second) + " already",
                          "give one of the two another id");
        }
    }
}

void checkReferences(const LayoutSource& source, const fs::path& images, Findings* findings) {
    for (const auto* section : {&source.fonts, &source.images, &source.strings, &source.objects}) {
        checkUnique(*section, findings);
    }
    const Ids ids = {idsOf(source.fonts), idsOf(source.images), idsOf(source.strings)};
    for (const xmlNode* object : source.objects) {
        for (const xmlNode* item : wholeTree(*object)) {
            checkTarget(*item, ids, findings);
        }
    }
    checkImageFiles(source, images, findings);
}

}  // namespace vaultpad::tools
