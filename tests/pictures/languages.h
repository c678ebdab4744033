/* The television's languages, and a process that speaks one of them. */
#ifndef VAULTPAD_PICTURES_LANGUAGES_H
#define VAULTPAD_PICTURES_LANGUAGES_H

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace vaultpad::test {

struct Language {
    std::string code;   /* the catalogue's name: "ko", "zh_TW", ... */
    std::string locale; /* "ko_KR.UTF-8", ... */

    /* English is what the layouts are written in: it has no catalogue. */
    bool isTranslated() const { return code != "en"; }
};

/* GoogleTest names a parameter by this. */
std::ostream& operator<<(std::ostream& stream, const Language& language);
std::string nameOf(const testing::TestParamInfo<Language>& info);

/* The languages of res/locale/languages.txt. Throws std::runtime_error. */
std::vector<Language> languages();
std::vector<Language> translatedLanguages();

/* Makes setlocale() find the build's own locales, and gettext look at nothing but the locale. */
void useBuiltLocales();

}  // namespace vaultpad::test

#endif
