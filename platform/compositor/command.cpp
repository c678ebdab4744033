#include "command.h"

#include <charconv>
#include <sstream>
#include <vector>

#include "keymap.h"

namespace vaultpad::compositor {

namespace {

Command wrong(const std::string& mistake) {
    Command command;
    command.kind = Command::Kind::kWrong;
    command.mistake = mistake;
    return command;
}

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream text(line.substr(0, line.find('#')));
    std::vector<std::string> words;
    for (std::string word; text >> word;) {
        words.push_back(word);
    }
    return words;
}

Command keyCommand(Command::Kind kind, const std::vector<std::string>& words) {
    if (words.size() != 2) {
        return wrong("'" + words[0] + "' takes one key: " + words[0] + " NAME");
    }
    if (codeOf(words[1]) == 0) {
        return wrong("the remote control has no key '" + words[1] + "'; 'keys' lists them");
    }
    Command command;
    command.kind = kind;
    command.key = words[1];
    return command;
}

Command focusCommand(const std::vector<std::string>& words) {
    Command command;
    command.kind = Command::Kind::kFocus;
    const char* const end = words.size() == 2 ? words[1].data() + words[1].size() : nullptr;
    if (end == nullptr || std::from_chars(words[1].data(), end, command.client).ptr != end || command.client <= 0) {
        return wrong("'focus' takes the process id of a client: focus PID; 'list' lists them");
    }
    return command;
}

Command bareCommand(Command::Kind kind, const std::vector<std::string>& words) {
    if (words.size() != 1) {
        return wrong("'" + words[0] + "' stands alone");
    }
    Command command;
    command.kind = kind;
    return command;
}

}  // namespace

Command parseCommand(const std::string& line) {
    const std::vector<std::string> words = wordsOf(line);
    if (words.empty()) {
        return {};
    }
    if (words[0] == "press") {
        return keyCommand(Command::Kind::kPress, words);
    }
    if (words[0] == "release") {
        return keyCommand(Command::Kind::kRelease, words);
    }
    if (words[0] == "tap") {
        return keyCommand(Command::Kind::kTap, words);
    }
    if (words[0] == "focus") {
        return focusCommand(words);
    }
    if (words[0] == "list") {
        return bareCommand(Command::Kind::kList, words);
    }
    if (words[0] == "keys") {
        return bareCommand(Command::Kind::kKeys, words);
    }
    return wrong("no command '" + words[0] + "': write press NAME, release NAME, tap NAME, focus PID, list or keys");
}

}  // namespace vaultpad::compositor
