#include "check/finding.h"

#include <algorithm>
#include <sstream>
#include <tuple>
#include <utility>

namespace vaultpad::tools {

namespace {

constexpr char kField = '\x1f';
constexpr char kRecord = '\x1e';

auto ordered(const Finding& finding) {
    return std::tie(finding.line, finding.rule, finding.what, finding.mend);
}

}  // namespace

std::string onOneLine(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

void Findings::add(int line, std::string rule, std::string what, std::string mend) {
    findings_.push_back({line, std::move(rule), onOneLine(std::move(what)), onOneLine(std::move(mend))});
}

std::size_t Findings::print(const std::string& file, std::ostream& output) {
    std::sort(findings_.begin(), findings_.end(),
              [](const Finding& a, const Finding& b) { return ordered(a) < ordered(b); });
    const auto end = std::unique(findings_.begin(), findings_.end(),
                                 [](const Finding& a, const Finding& b) { return ordered(a) == ordered(b); });
    findings_.erase(end, findings_.end());
    for (const Finding& finding : findings_) {
        output << file << ":" << finding.line << ": " << finding.rule << ": " << finding.what << "; " << finding.mend
               << "\n";
    }
    return findings_.size();
}

std::string Findings::serialised() const {
    std::ostringstream text;
    for (const Finding& finding : findings_) {
        text << finding.line << kField << finding.rule << kField << finding.what << kField << finding.mend << kRecord;
    }
    return text.str();
}

void Findings::addSerialised(const std::string& text) {
    std::istringstream records(text);
    std::string record;
    while (std::getline(records, record, kRecord)) {
        std::istringstream fields(record);
        std::string line;
        Finding finding;
        std::getline(fields, line, kField);
        std::getline(fields, finding.rule, kField);
        std::getline(fields, finding.what, kField);
        std::getline(fields, finding.mend, kField);
        finding.line = std::stoi(line);
        findings_.push_back(std::move(finding));
    }
}

}  // namespace vaultpad::tools
