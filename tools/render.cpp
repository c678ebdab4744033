#include "render.h"

#include <vaultpad/ta-protocol.h>

#include <iostream>

#include "drawn-layout.h"
#include "host-services.h"
#include "layout.h"
#include "png-file.h"
#include "terminal-preview.h"
#include "usage-error.h"

namespace vaultpad::tools {

namespace {

std::uint32_t orientationFor(const LayoutKind& kind, const std::string& wanted) {
    const std::uint32_t orientation = wanted.empty() ? usualOrientation(kind) : orientationCalled(wanted);
    if ((orientation != VAULTPAD_TA_ORIENTATION_LANDSCAPE) != kind.vertical) {
        throw UsageError("the layout is never shown in " + wanted + "; use " +
                         (kind.vertical ? "portrait or portrait-reversed" : "landscape"));
    }
    return orientation;
}

}  // namespace

LayoutKind kindOfPad(const std::filesystem::path& file, const std::string& kindName) {
    const auto kind = layoutKindOf(kindName.empty() ? file : std::filesystem::path(kindName));
    if (!kind) {
        throw UsageError((kindName.empty() ? file.string() : kindName) +
                         ": the name does not tell the kind of pad; call it "
                         "[vertical-][reverse-]keyboard|pinpad[-e|-h|-eh].xml or give such a name with --as");
    }
    return *kind;
}

secureworld::Bitmap renderPicture(const RenderOptions& options) {
    const LayoutKind kind = kindOfPad(options.file, options.kindName);
    const secureworld::PadType type = padTypeOf(kind, orientationFor(kind, options.orientation));
    const auto layout = readLayout(options.file, options.images);
    applyLanguage(options.language,
                  options.catalogues.empty() ? cataloguesBeside(layout->imageBaseDirectory()) : options.catalogues);
    return composePad(drawLayout(layout, type.orientation), type, options.state);
}

void render(const RenderOptions& options) {
    const secureworld::Bitmap picture = renderPicture(options);
    for (const std::string& error : takeLoggedErrors()) {
        std::cerr << options.file.string() << ": " << error << "; add it, or name its folder with --images\n";
    }
    if (options.terminal) {
        std::cout << terminalPreview(picture) << std::flush;
    } else {
        writePng(options.output, picture);
    }
}

}  // namespace vaultpad::tools
