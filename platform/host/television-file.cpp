#include "television-file.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <utility>

namespace vaultpad::host {

namespace {

struct Value {
    std::string text;
    std::filesystem::path folder; /* that relative paths are meant from */
};

/* One key that the file may hold. */
struct KeyRule {
    const char* group;
    const char* key;
    std::string accepted; /* for the message about a value that is not */
    std::function<bool(const Value&, Television&)> store;
};

KeyRule numberKey(const char* group, const char* key, int Television::*member, int low, int high) {
    return {group, key, std::to_string(low) + ".." + std::to_string(high),
            [=](const Value& value, Television& television) {
                int number = 0;
                const char* const end = value.text.data() + value.text.size();
                const auto [stop, error] = std::from_chars(value.text.data(), end, number);
                if (error != std::errc() || stop != end || number < low || number > high) {
                    return false;
                }
                television.*member = number;
                return true;
            }};
}

template <typename Choice>
KeyRule choiceKey(const char* group, const char* key, Choice Television::*member,
                  const std::vector<std::pair<const char*, Choice>>& choices) {
    std::string accepted;
    for (const auto& [word, choice] : choices) {
        accepted += (accepted.empty() ? "" : " | ") + std::string(word);
    }
    return {group, key, accepted, [=](const Value& value, Television& television) {
                for (const auto& [word, choice] : choices) {
                    if (value.text == word) {
                        television.*member = choice;
                        return true;
                    }
                }
                return false;
            }};
}

KeyRule textKey(const char* group, const char* key, const char* accepted, std::string Television::*member) {
    return {group, key, accepted, [=](const Value& value, Television& television) {
                television.*member = value.text;
                return !value.text.empty();
            }};
}

KeyRule pathKey(const char* group, const char* key, std::string Television::*member) {
    return {group, key, "a path", [=](const Value& value, Television& television) {
                television.*member = value.folder / value.text;
                return !value.text.empty();
            }};
}

bool storeLogTarget(const Value& value, Television& television) {
    if (value.text == "stderr" || value.text == "none") {
        television.logTarget = value.text == "none" ? LogTarget::kNone : LogTarget::kStderr;
        return true;
    }
    television.logTarget = LogTarget::kFile;
    television.logFile = value.folder / value.text;
    return !value.text.empty();
}

bool storeTaLog(const Value& value, Television& television) {
    const bool word = value.text == "stderr" || value.text == "none";
    television.taLog = word ? value.text : (value.folder / value.text).string();
    return !value.text.empty();
}

bool isUser(const std::string& text) {
    return text == "*" || std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

/* Reads "LABEL UID PRIVILEGE; ...". A label may hold spaces, the two other fields cannot. */
bool parseRules(const std::string& text, std::vector<PrivilegeRule>& rules) {
    std::istringstream list(text);
    std::string entry;
    while (std::getline(list, entry, ';')) {
        std::istringstream words(entry);
        std::vector<std::string> fields;
        for (std::string word; words >> word;) {
            fields.push_back(word);
        }
        if (fields.empty()) {
            continue; /* behind the last semicolon */
        }
        if (fields.size() < 3 || !isUser(fields[fields.size() - 2])) {
            return false;
        }
        PrivilegeRule rule{fields[0], fields[fields.size() - 2], fields.back()};
        for (std::size_t i = 1; i + 2 < fields.size(); ++i) {
            rule.client += " " + fields[i];
        }
        rules.push_back(std::move(rule));
    }
    return true;
}

KeyRule rulesKey(const char* key, std::vector<PrivilegeRule> Television::*member) {
    return {"privilege", key, "rules \"LABEL UID PRIVILEGE\" separated by ';', each field a text or *",
            [=](const Value& value, Television& television) { return parseRules(value.text, television.*member); }};
}

std::vector<KeyRule> makeKeyRules() {
    using T = Television;
    const std::vector<std::pair<const char*, PanelPosition>> positions = {
        {"none", PanelPosition::kNone},
        {"landscape", PanelPosition::kLandscape},
        {"portrait", PanelPosition::kPortrait},
        {"portrait-reversed", PanelPosition::kPortraitReversed}};
    const std::vector<std::pair<const char*, BluetoothStop>> stops = {
        {"ok", BluetoothStop::kOk}, {"not-streaming", BluetoothStop::kNotStreaming}, {"fails", BluetoothStop::kFails}};
    const std::vector<std::pair<const char*, std::string>> displays = {
        {"none", "none"}, {"terminal", "terminal"}, {"png", "png"}, {"window", "window"}};
    const std::vector<std::pair<const char*, std::string>> voices = {
        {"none", "none"}, {"files", "files"}, {"player", "player"}};
    constexpr const char* kLogTargets = "stderr | none | a path";
    return {
        {"log", "target", kLogTargets, storeLogTarget},
        choiceKey<bool>("log", "level", &T::logErrorsOnly, {{"info", false}, {"error", true}}),
        pathKey("paths", "application-root", &T::applicationRoot),
        textKey("settings", "language", "a locale's name", &T::language),
        numberKey("settings", "focus-zoom", &T::focusZoom, 0, 1),
        numberKey("settings", "high-contrast", &T::highContrast, 0, 1),
        numberKey("settings", "bluetooth-streaming", &T::bluetoothStreaming, 0, 1),
        choiceKey<bool>("orientation", "mirrored", &T::mirrored, {{"false", false}, {"true", true}}),
        choiceKey("orientation", "rotator", &T::rotator, positions),
        choiceKey("orientation", "sensor", &T::sensor, positions),
        numberKey("sound", "volume", &T::volume, 0, 100),
        numberKey("sound", "speaker", &T::speaker, 0, 9),
        choiceKey("sound", "bluetooth-stop", &T::bluetoothStop, stops),
        choiceKey("sound", "voice", &T::voice, voices),
        pathKey("sound", "voice-folder", &T::voiceFolder),
        pathKey("sound", "voice-player", &T::voicePlayer),
        choiceKey<bool>("privilege", "default", &T::allowByDefault, {{"allow", true}, {"deny", false}}),
        rulesKey("allow", &T::allow),
        rulesKey("deny", &T::deny),
        pathKey("secure-world", "executable", &T::taExecutable),
        choiceKey("secure-world", "display", &T::taDisplay, displays),
        pathKey("secure-world", "frames", &T::taFrames),
        choiceKey<std::string>("secure-world", "view", &T::taView, {{"pad", "pad"}, {"screen", "screen"}}),
        pathKey("secure-world", "store", &T::taStore),
        {"secure-world", "log", kLogTargets, storeTaLog},
        numberKey("secure-world", "timeout", &T::taTimeoutSeconds, 1, 600),
    };
}

struct GlibDelete {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
    void operator()(GError* error) const { g_error_free(error); }
    void operator()(char* text) const { g_free(text); }
    void operator()(char** texts) const { g_strfreev(texts); }
};
using GlibText = std::unique_ptr<char, GlibDelete>;
using GlibTexts = std::unique_ptr<char*, GlibDelete>;

/* Walks through one key file, rule by rule. */
class Reader {
public:
    Reader(std::string name, Television& television)
        : name_(std::move(name)), television_(television), file_(g_key_file_new()) {}

    std::vector<std::string> read(const std::string& text) {
        GError* failure = nullptr;
        if (!g_key_file_load_from_data(file_.get(), text.data(), text.size(), G_KEY_FILE_NONE, &failure)) {
            const std::unique_ptr<GError, GlibDelete> error(failure);
            problems_.push_back(name_ + ": is not a key file: " + error->message);
            return std::move(problems_);
        }
        const GlibTexts groups(g_key_file_get_groups(file_.get(), nullptr));
        for (char** group = groups.get(); *group != nullptr; ++group) {
            readGroup(*group);
        }
        if (problems_.empty()) {
            findMissingKeys();
        }
        return std::move(problems_);
    }

private:
    void readGroup(const char* group) {
        std::string known;
        for (const KeyRule& rule : rules_) {
            if (std::strcmp(rule.group, group) == 0) {
                known += (known.empty() ? "" : ", ") + std::string(rule.key);
            }
        }
        if (known.empty()) {
            problems_.push_back(name_ + ": [" + group + "]: unknown group; known are " + knownGroups());
            return;
        }
        const GlibTexts keys(g_key_file_get_keys(file_.get(), group, nullptr, nullptr));
        for (char** key = keys.get(); keys != nullptr && *key != nullptr; ++key) {
            const auto rule = std::find_if(rules_.begin(), rules_.end(), [&](const KeyRule& candidate) {
                return std::strcmp(candidate.group, group) == 0 && std::strcmp(candidate.key, *key) == 0;
            });
            if (rule == rules_.end()) {
                problems_.push_back(name_ + ": [" + group + "] " + *key + ": unknown key; known are " + known);
            } else {
                readKey(*rule);
            }
        }
    }

    void findMissingKeys() {
        const struct {
            bool missing;
            const char* problem;
        } needs[] = {{television_.taDisplay == "png" && television_.taFrames.empty(),
                      "[secure-world] display = png: needs the key frames, a folder for the files"},
                     {television_.voice == "files" && television_.voiceFolder.empty(),
                      "[sound] voice = files: needs the key voice-folder, a folder for the files"},
                     {television_.voice == "player" && television_.voicePlayer.empty(),
                      "[sound] voice = player: needs the key voice-player, the path of a program"}};
        for (const auto& need : needs) {
            if (need.missing) {
                problems_.push_back(name_ + ": " + need.problem);
            }
        }
    }

    void readKey(const KeyRule& rule) {
        GError* failure = nullptr;
        const GlibText text(g_key_file_get_string(file_.get(), rule.group, rule.key, &failure));
        const std::unique_ptr<GError, GlibDelete> error(failure);
        if (error != nullptr || text == nullptr) {
            addValueProblem(rule, "is no text of UTF-8 in which \\\\ stands for a backslash");
            return;
        }
        const Value value{g_strstrip(text.get()), std::filesystem::path(name_).parent_path()};
        if (!rule.store(value, television_)) {
            addValueProblem(rule, "must be " + rule.accepted);
        }
    }

    /* Shows the value as it stands in the file. */
    void addValueProblem(const KeyRule& rule, const std::string& problem) {
        const GlibText raw(g_key_file_get_value(file_.get(), rule.group, rule.key, nullptr));
        problems_.push_back(name_ + ": [" + rule.group + "] " + rule.key + " = " + (raw ? raw.get() : "") + ": " +
                            problem);
    }

    std::string knownGroups() const {
        std::string groups;
        const char* last = "";
        for (const KeyRule& rule : rules_) {
            if (std::strcmp(last, rule.group) != 0) {
                groups += (groups.empty() ? "" : ", ") + std::string(rule.group);
                last = rule.group;
            }
        }
        return groups;
    }

    const std::string name_;
    Television& television_;
    const std::unique_ptr<GKeyFile, GlibDelete> file_;
    const std::vector<KeyRule> rules_ = makeKeyRules();
    std::vector<std::string> problems_;
};

}  // namespace

std::vector<std::string> parseTelevision(const std::string& text, const std::string& file, Television& television) {
    return Reader(file, television).read(text);
}

}  // namespace vaultpad::host
