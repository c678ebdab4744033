#include "languages.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace vaultpad::test {

std::ostream& operator<<(std::ostream& stream, const Language& language) {
    return stream << language.code;
}

std::string nameOf(const testing::TestParamInfo<Language>& info) {
    return info.param.code;
}

std::vector<Language> languages() {
    std::ifstream table(VAULTPAD_LANGUAGE_TABLE);
    std::vector<Language> languages;
    std::string line;
    while (std::getline(table, line)) {
        Language language;
        if (line.front() != '#' && std::istringstream(line) >> language.code >> language.locale) {
            languages.push_back(language);
        }
    }
    if (languages.empty()) {
        throw std::runtime_error(VAULTPAD_LANGUAGE_TABLE ": no language in it");
    }
    return languages;
}

std::vector<Language> translatedLanguages() {
    std::vector<Language> translated = languages();
    const auto untranslated = [](const Language& language) { return !language.isTranslated(); };
    translated.erase(std::remove_if(translated.begin(), translated.end(), untranslated), translated.end());
    return translated;
}

void useBuiltLocales() {
    setenv("LOCPATH", VAULTPAD_LOCALE_PATH, 1);
    unsetenv("LANGUAGE");
    unsetenv("LC_ALL");
}

}  // namespace vaultpad::test
