#include "check/xml-file.h"

#include <libxml/parser.h>
#include <libxml/relaxng.h>
#include <libxml/xmlerror.h>

#include <map>
#include <stdexcept>

namespace vaultpad::tools {

namespace {

constexpr int kParseOptions = XML_PARSE_NONET | XML_PARSE_BIG_LINES;

struct Free {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
    void operator()(xmlRelaxNGParserCtxt* context) const { xmlRelaxNGFreeParserCtxt(context); }
    void operator()(xmlRelaxNG* schema) const { xmlRelaxNGFree(schema); }
    void operator()(xmlRelaxNGValidCtxt* context) const { xmlRelaxNGFreeValidCtxt(context); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};
template <typename Type>
using Owned = std::unique_ptr<Type, Free>;

std::string messageOf(const xmlError& error) {
    std::string message = error.message != nullptr ? error.message : "unknown error";
    while (!message.empty() && (message.back() == '\n' || message.back() == '.')) {
        message.pop_back();
    }
    return message;
}

// Errors that only repeat, for the elements around, that something within them is wrong.
bool isConsequence(int code) {
    switch (code) {
        case XML_RELAXNG_ERR_CONTENTVALID:
        case XML_RELAXNG_ERR_INTEREXTRA:
        case XML_RELAXNG_ERR_INTERSEQ:
        case XML_RELAXNG_ERR_EXTRACONTENT:
        case XML_RELAXNG_ERR_INTERNODATA:
        case XML_RELAXNG_ERR_NOELEM:
            return true;
        default:
            return false;
    }
}

#if LIBXML_VERSION >= 21200
using ErrorPointer = const xmlError*;
#else
using ErrorPointer = xmlError*;
#endif

// Where the markup first goes wrong; what the parser says afterwards is about its guesses.
struct FirstError {
    int line = 0;
    std::string message;
};

void takeMarkupError(void* parser, ErrorPointer error) {
    auto* first = static_cast<FirstError*>(static_cast<xmlParserCtxt*>(parser)->_private);
    if (error->level >= XML_ERR_ERROR && first->message.empty()) {
        *first = {error->line, messageOf(*error)};
    }
}

// What an element is made of, for whoever has to mend one.
std::string mendFor(const xmlNode* element) {
    static const std::map<std::string, const char*> kElements = {
        {"font", "a font takes id, family, size and color"},
        {"image", "an image takes id, then type=\"file\" and url, or width and height"},
        {"string", "a string takes id, value and, when it is translated, i18n=\"true\""},
        {"object",
         "an object takes ref, type (image or text), font, top, left, line-height, text-align (left, center or right) "
         "and margin, one that is not nested also id, x and y"},
        {"images", "the images take basedir"},
        {"item", "a voice takes an id and nothing within"}};
    const auto known =
        element != nullptr && element->name != nullptr ? kElements.find(nameOf(*element)) : kElements.end();
    return known != kElements.end() ? known->second : "a layout holds fonts, images, strings and objects";
}

struct SchemaErrors {
    Findings plain;
    Finding innermost; /* of the consequences */
};

void takeSchemaError(void* errors, ErrorPointer error) {
    auto* target = static_cast<SchemaErrors*>(errors);
    const Finding finding = {error->line, "schema", messageOf(*error), mendFor(static_cast<xmlNode*>(error->node))};
    if (!isConsequence(error->code)) {
        target->plain.add(finding.line, finding.rule, finding.what, finding.mend);
    } else if (finding.line >= target->innermost.line) {
        target->innermost = finding;
    }
}

}  // namespace

XmlFile::XmlFile(const std::filesystem::path& path, Findings* findings) {
    const Owned<xmlParserCtxt> context(xmlNewParserCtxt());
    FirstError error;
    context->_private = &error;
    context->sax->serror = takeMarkupError;
    document_.reset(xmlCtxtReadFile(context.get(), path.c_str(), nullptr, kParseOptions));
    if (!document_ || root() == nullptr || !error.message.empty()) {
        findings->add(error.line, "xml", error.message.empty() ? "the file cannot be read" : error.message,
                      "mend the markup");
        document_.reset();
    }
}

const xmlNode* XmlFile::root() const {
    return document_ ? xmlDocGetRootElement(document_.get()) : nullptr;
}

void XmlFile::validate(const std::filesystem::path& schema, Findings* findings) const {
    const Owned<xmlRelaxNGParserCtxt> parser(xmlRelaxNGNewParserCtxt(schema.c_str()));
    const Owned<xmlRelaxNG> rules(xmlRelaxNGParse(parser.get()));
    if (!rules) {
        throw std::runtime_error(schema.string() + " is no schema; install vaultpad-layout again");
    }
    const Owned<xmlRelaxNGValidCtxt> validation(xmlRelaxNGNewValidCtxt(rules.get()));
    SchemaErrors errors;
    xmlRelaxNGSetValidStructuredErrors(validation.get(), takeSchemaError, &errors);
    if (xmlRelaxNGValidateDoc(validation.get(), document_.get()) == 0) {
        return;
    }
    if (errors.plain.empty()) {
        const Finding& finding = errors.innermost;
        errors.plain.add(finding.line, "schema", finding.what, finding.mend);
    }
    findings->addSerialised(errors.plain.serialised());
}

std::vector<const xmlNode*> elementsOf(const xmlNode& parent) {
    std::vector<const xmlNode*> elements;
    for (const xmlNode* node = parent.children; node != nullptr; node = node->next) {
        if (node->type == XML_ELEMENT_NODE) {
            elements.push_back(node);
        }
    }
    return elements;
}

std::vector<const xmlNode*> wholeTree(const xmlNode& element) {
    std::vector<const xmlNode*> tree = {&element};
    for (const xmlNode* child : elementsOf(element)) {
        const std::vector<const xmlNode*> nested = wholeTree(*child);
        tree.insert(tree.end(), nested.begin(), nested.end());
    }
    return tree;
}

std::string nameOf(const xmlNode& element) {
    return reinterpret_cast<const char*>(element.name);
}

int lineOf(const xmlNode& element) {
    return static_cast<int>(xmlGetLineNo(const_cast<xmlNode*>(&element)));
}

std::optional<std::string> attributeOf(const xmlNode& element, const char* name) {
    const Owned<xmlChar> value(xmlGetNoNsProp(const_cast<xmlNode*>(&element), reinterpret_cast<const xmlChar*>(name)));
    return value ? std::optional<std::string>(reinterpret_cast<const char*>(value.get())) : std::nullopt;
}

std::string textOf(const xmlNode& element, const char* name) {
    return attributeOf(element, name).value_or("");
}

LayoutSource sectionsOf(const xmlNode& root) {
    LayoutSource source;
    std::map<std::string, std::vector<const xmlNode*>*> sections = {{"fonts", &source.fonts},
                                                                    {"images", &source.images},
                                                                    {"strings", &source.strings},
                                                                    {"objects", &source.objects},
                                                                    {"voices", &source.voices}};
    for (const xmlNode* section : elementsOf(root)) {
        const auto known = sections.find(nameOf(*section));
        if (known == sections.end()) {
            continue;
        }
        const std::vector<const xmlNode*> items = elementsOf(*section);
        known->second->insert(known->second->end(), items.begin(), items.end());
        if (known->first == "images") {
            source.imageSection = section;
        }
    }
    return source;
}

}  // namespace vaultpad::tools
