#include "languages.h"

#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>

#include "usage-error.h"

namespace vaultpad::tools {

namespace {

namespace fs = std::filesystem;

constexpr const char* kTextDomain = "vaultpad";
constexpr const char* kCatalogue = "LC_MESSAGES/vaultpad.mo";
// A locale that is always there, for languages whose own locale is not installed.
constexpr const char* kFallbackLocale = "C.UTF-8";

// "pt_BR.UTF-8" is looked for as pt_BR and then as pt.
std::string withoutCodeset(const std::string& locale) {
    return locale.substr(0, locale.find_first_of(".@"));
}

std::string withoutTerritory(const std::string& language) {
    return language.substr(0, language.find('_'));
}

bool hasCatalogue(const fs::path& catalogues, const std::string& language) {
    std::error_code ignored;
    return fs::exists(catalogues / language / kCatalogue, ignored);
}

bool isUntranslated(const std::string& language) {
    return language == "C" || language == "POSIX" || withoutTerritory(language) == kSourceLanguage;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

}  // namespace

fs::path cataloguesBeside(const fs::path& images) {
    return images.parent_path() / "locale";
}

std::vector<std::string> availableLanguages(const fs::path& catalogues) {
    std::vector<std::string> languages;
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(catalogues, ignored)) {
        const std::string name = entry.path().filename().string();
        if (hasCatalogue(catalogues, name) && !isUntranslated(name)) {
            languages.push_back(name);
        }
    }
    std::sort(languages.begin(), languages.end());
    languages.insert(languages.begin(), kSourceLanguage);
    return languages;
}

void applyLanguage(const std::string& locale, const fs::path& catalogues) {
    const std::string language = withoutCodeset(locale);
    if (!isUntranslated(language) && !hasCatalogue(catalogues, language) &&
        !hasCatalogue(catalogues, withoutTerritory(language))) {
        throw UsageError("there is no catalogue for '" + locale + "' in " + catalogues.string() + "; available: " +
                         joined(availableLanguages(catalogues)) + "; --locale names another folder of catalogues");
    }
    if (std::setlocale(LC_ALL, locale.c_str()) == nullptr || isUntranslated(language)) {
        std::setlocale(LC_ALL, kFallbackLocale);
    }
    // The locale's environment must not choose another language than the one that was asked for.
    setenv("LANGUAGE", isUntranslated(language) ? kSourceLanguage : language.c_str(), 1);
    std::string fontLanguage = isUntranslated(language) ? kSourceLanguage : language;
    std::replace(fontLanguage.begin(), fontLanguage.end(), '_', '-');
    setenv("FC_LANG", fontLanguage.c_str(), 1);
    bindtextdomain(kTextDomain, fs::absolute(catalogues).c_str());
    bind_textdomain_codeset(kTextDomain, "UTF-8");
    textdomain(kTextDomain);
}

}  // namespace vaultpad::tools
