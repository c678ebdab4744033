/* Languages and their message catalogues. */
#ifndef VAULTPAD_TOOLS_LANGUAGES_H
#define VAULTPAD_TOOLS_LANGUAGES_H

#include <filesystem>
#include <string>
#include <vector>

namespace vaultpad::tools {

/* The language that the layouts are written in, for which no catalogue is needed. */
constexpr const char* kSourceLanguage = "en";

/* Where the catalogues of a layout are: beside its images. */
std::filesystem::path cataloguesBeside(const std::filesystem::path& images);

/* The languages with a catalogue in the folder, sorted, the source language first. */
std::vector<std::string> availableLanguages(const std::filesystem::path& catalogues);

/*
 * Sets the process's language, once and before anything is drawn: fonts are chosen by it too. locale is a locale's
 * name, or a language's ("de", "pt_BR"); the locale need not be installed. Throws UsageError when there is no
 * catalogue for it.
 */
void applyLanguage(const std::string& locale, const std::filesystem::path& catalogues);

}  // namespace vaultpad::tools

#endif
