/* How an item is spoken: in which voice, in which words. */
#ifndef VAULTPAD_HELPERS_VOICE_MAKER_SPEECH_H
#define VAULTPAD_HELPERS_VOICE_MAKER_SPEECH_H

#include <string>
#include <vector>

#include "voice-maker/voice-list.h"

namespace vaultpad::helpers {

struct Utterance {
    std::string voice;  /* of espeak-ng */
    std::string markup; /* SSML */
};

class Speech {
public:
    /*
     * Applies the locale, which may be null, and finds its catalogue below the folder. What is spoken is the language
     * of the catalogue, so that text and voice agree: a locale that this host does not have, and one without a
     * catalogue, speak English.
     */
    Speech(const char* locale, const std::string& catalogues);

    /* The voice of the menu language. */
    const std::string& voice() const { return voice_; }

    /* The ways to speak the item, best first: in the menu language, and in English when there is no such voice. */
    std::vector<Utterance> utterances(const VoiceItem& item) const;

private:
    std::string voice_;
};

}  // namespace vaultpad::helpers

#endif
