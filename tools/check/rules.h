/* The rules of vaultpad-layout check. Each adds its findings. */
#ifndef VAULTPAD_TOOLS_CHECK_RULES_H
#define VAULTPAD_TOOLS_CHECK_RULES_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "check/finding.h"
#include "check/xml-file.h"
#include "drawn-layout.h"
#include "pad/geometry.h"
#include "pad/image-id.h"

namespace vaultpad::tools {

/* --- What is written. ------------------------------------------------------------------------------------------- */

/* duplicate-id, ref, font, image. images: the folder of the images, or empty for the one that the layout names. */
void checkReferences(const LayoutSource& source, const std::filesystem::path& images, Findings* findings);

/* number, colour. */
void checkValues(const LayoutSource& source, Findings* findings);

/* id, place, origin, twin (whether both states of a key are there), page. */
void checkObjects(const LayoutSource& source, Findings* findings);

/* missing-id, duplicate-id, unknown-key. layout: the one that the voices speak for. */
void checkVoices(const LayoutSource& voices, const LayoutSource& layout, Findings* findings);

/* duplicate-id among the items of one section. */
void checkUnique(const std::vector<const xmlNode*>& items, Findings* findings);

/* --- What is drawn. --------------------------------------------------------------------------------------------- */

/* A top-level object as it came out. Pointers are borrowed. */
struct CheckedObject {
    secureworld::ImageId id;
    const DrawnImage* image;
    const xmlNode* source;
};

/* Twin (place and size), overlap, area, mask. */
void checkPlaces(const std::vector<CheckedObject>& objects, secureworld::Size area, Findings* findings);

/* reach: keys and pages that no way of the focus leads to. */
void checkReach(const std::vector<CheckedObject>& objects, Findings* findings);

/* fit. minFont: 0 for the stated size. */
void checkLabels(const std::vector<CheckedObject>& objects, const std::string& language, int minFont,
                 const LayoutSource& source, Findings* findings);

/* contrast: what a high-contrast layout promises. */
void checkContrast(const std::vector<CheckedObject>& objects, Findings* findings);

/* Whether two items can be seen at the same time. */
inline bool sharePage(const secureworld::ImageId& a, const secureworld::ImageId& b) {
    return a.page.empty() || b.page.empty() || a.page == b.page;
}

/* Whether the two are the states of one key. */
inline bool areTwins(const secureworld::ImageId& a, const secureworld::ImageId& b) {
    return a.kind == secureworld::ImageKind::Key && b.kind == a.kind && a.page == b.page && a.keysym == b.keysym &&
           a.targetPage == b.targetPage && a.focused != b.focused;
}

}  // namespace vaultpad::tools

#endif
