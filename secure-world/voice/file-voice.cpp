#include "voice/file-voice.h"

#include <cstddef>
#include <fstream>
#include <stdexcept>

namespace vaultpad::secureworld {

namespace {

constexpr std::size_t kNamePartMax = 100;
constexpr std::string_view kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.";

}  // namespace

std::string fileNamePart(std::string_view id) {
    std::string result(id.substr(0, kNamePartMax));
    for (char& c : result) {
        if (kPlain.find(c) == std::string_view::npos) {
            c = '_';
        }
    }
    return result;
}

FileVoice::FileVoice(const std::string& folder) : files_(folder, "voice") {}

void FileVoice::speak(const std::vector<VoiceClip>& clips) {
    for (const VoiceClip& clip : clips) {
        std::ofstream file(files_.unfinished(), std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(clip.sound->data()), static_cast<std::streamsize>(clip.sound->size()));
        file.close();
        if (!file) {
            throw std::runtime_error("cannot write " + files_.unfinished().string());
        }
        files_.publish("-" + fileNamePart(clip.id) + ".wav");
    }
}

}  // namespace vaultpad::secureworld
