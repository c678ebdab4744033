// Parsing of layout files; beside the XML library alone on the same file.
#include <libxml/parser.h>

#include <stdexcept>
#include <string>

#include "comparison.h"
#include "context/application-context-parser.h"
#include "television.h"

namespace {

using namespace vaultpad;
using bench::compare;
using bench::Comparison;
using bench::Look;

int countElements(const context::Element& element) {
    int count = 1;
    for (const auto& child : *element.children()) {
        count += countElements(*child);
    }
    return count;
}

int countElements(const context::ElementContainer& container) {
    int count = 0;
    for (const auto& section : {container.fonts(), container.images(), container.strings(), container.objects()}) {
        for (const auto& [id, element] : *section) {
            count += countElements(*element);
        }
    }
    return count;
}

void readWithLibraryAlone(const std::string& path) {
    xmlDoc* const document = xmlReadFile(path.c_str(), nullptr, 0);
    if (document == nullptr) {
        throw std::runtime_error(path + ": cannot be parsed");
    }
    xmlFreeDoc(document);
}

void registerLayout(const Look& look) {
    context::ApplicationContextParser parser;
    parser.setMode(look.enlarged, look.highContrast, look.type, look.mirrored, look.portrait ? 1 : 0);
    Comparison comparison;
    comparison.name = bench::nameOf(look);
    comparison.yardstick = "libxml2's tree of the file";
    comparison.item = "element";
    comparison.items = countElements(*parser.parse());
    compare(
        comparison, [parser]() mutable { benchmark::DoNotOptimize(parser.parse()); },
        [path = parser.path()] { readWithLibraryAlone(path); });
}

bool registerAll() {
    bench::useTelevision();
    registerLayout({1});
    registerLayout({2});
    registerLayout({2, true, true, true, true});
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
