/* An XML file with its lines, for rules about what is written in it. */
#ifndef VAULTPAD_TOOLS_CHECK_XML_FILE_H
#define VAULTPAD_TOOLS_CHECK_XML_FILE_H

#include <libxml/tree.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "check/finding.h"

namespace vaultpad::tools {

class XmlFile {
public:
    /* A file that is no well-formed XML has no root, and a finding of the rule "xml" says why. */
    XmlFile(const std::filesystem::path& path, Findings* findings);

    /* Null for a file that is no well-formed XML. Valid as long as the file. */
    const xmlNode* root() const;

    /* Compares the file with a RELAX NG schema; findings of the rule "schema". Throws std::runtime_error. */
    void validate(const std::filesystem::path& schema, Findings* findings) const;

private:
    struct Free {
        void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    };
    std::unique_ptr<xmlDoc, Free> document_;
};

/* The elements within, in document order. */
std::vector<const xmlNode*> elementsOf(const xmlNode& parent);

/* Element and all that is nested in it, depth first: the order of DrawnText::position. */
std::vector<const xmlNode*> wholeTree(const xmlNode& element);

std::string nameOf(const xmlNode& element);
int lineOf(const xmlNode& element);

/* Nothing for an absent attribute. */
std::optional<std::string> attributeOf(const xmlNode& element, const char* name);

/* The attribute's value, empty for an absent one. */
std::string textOf(const xmlNode& element, const char* name);

/* A layout's items, section by section. The nodes belong to the file. */
struct LayoutSource {
    std::vector<const xmlNode*> fonts;
    std::vector<const xmlNode*> images;
    std::vector<const xmlNode*> strings;
    std::vector<const xmlNode*> objects;
    std::vector<const xmlNode*> voices;
    const xmlNode* imageSection = nullptr; /* the last one, whose directory counts */
};

LayoutSource sectionsOf(const xmlNode& root);

}  // namespace vaultpad::tools

#endif
