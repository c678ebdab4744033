/* What is to be spoken: the items of a voice file. */
#ifndef VAULTPAD_HELPERS_VOICE_MAKER_VOICE_LIST_H
#define VAULTPAD_HELPERS_VOICE_MAKER_VOICE_LIST_H

#include <string>
#include <vector>

namespace vaultpad::helpers {

struct VoiceItem {
    std::string id;
    std::string text;
    bool translated;    /* the text is a message of the catalogue */
    std::string letter; /* takes the place of %s in the text */
};

/*
 * The file's items, each at the index of its clip. Reads a file as the library does: items of several sections are
 * merged, of equal ids the last stays. Throws std::runtime_error, naming the file.
 */
std::vector<VoiceItem> readVoices(const std::string& path);

}  // namespace vaultpad::helpers

#endif
