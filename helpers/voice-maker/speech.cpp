#include "voice-maker/speech.h"

#include <common/markup.h>
#include <libintl.h>

#include <algorithm>
#include <clocale>

namespace vaultpad::helpers {

namespace {

constexpr char kDomain[] = "vaultpad";
constexpr char kEnglish[] = "en-us";
constexpr char kPlaceholder[] = "%s";

// Voices whose name is not that of the language.
struct NamedVoice {
    const char* language;
    const char* voice;
};
constexpr NamedVoice kVoices[] = {{"pt_BR", "pt-br"}, {"zh_CN", "cmn"}, {"zh_TW", "cmn"}, {"en", kEnglish}};

// The catalogue in use names its language in its header, which is the translation of nothing.
std::string catalogueLanguage() {
    const std::string header = dgettext(kDomain, "");
    const std::string field = "\nLanguage: ";
    const std::size_t start = header.find(field);
    if (start == std::string::npos) {
        return "en";
    }
    const std::size_t name = start + field.size();
    return header.substr(name, header.find('\n', name) - name);
}

std::string voiceFor(const std::string& language) {
    for (const NamedVoice& named : kVoices) {
        if (language == named.language) {
            return named.voice;
        }
    }
    return language;
}

// Speaks characters by their names. Read as text, most brackets are silent.
std::string spelled(const std::string& characters) {
    return "<say-as interpret-as=\"characters\">" + escapedMarkup(characters) + "</say-as>";
}

bool isSingleCharacter(const std::string& text) {
    const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), continues)) == 1;
}

std::string markup(const std::string& text, const std::string& letter) {
    const std::size_t place = letter.empty() ? std::string::npos : text.find(kPlaceholder);
    if (place != std::string::npos) {
        return escapedMarkup(text.substr(0, place)) + spelled(letter) + escapedMarkup(text.substr(place + 2));
    }
    return isSingleCharacter(text) ? spelled(text) : escapedMarkup(text);
}

}  // namespace

Speech::Speech(const char* locale, const std::string& catalogues) {
    if (locale == nullptr || setlocale(LC_ALL, locale) == nullptr) {
        setlocale(LC_ALL, "C");
    }
    bindtextdomain(kDomain, catalogues.c_str());
    bind_textdomain_codeset(kDomain, "UTF-8");
    voice_ = voiceFor(catalogueLanguage());
}

std::vector<Utterance> Speech::utterances(const VoiceItem& item) const {
    // The translation of the empty text is the catalogue's header.
    const std::string text = item.translated && !item.text.empty() ? dgettext(kDomain, item.text.c_str()) : item.text;
    std::vector<Utterance> result{{voice_, markup(text, item.letter)}};
    if (voice_ != kEnglish) {
        result.push_back({kEnglish, markup(item.text, item.letter)});
    }
    return result;
}

}  // namespace vaultpad::helpers
