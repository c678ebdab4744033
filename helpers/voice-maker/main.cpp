// The voice maker: speaks the items of a pad's voice file in the menu language and takes the clips to the library,
// which started it. It knows the pad's keys, and never which of them are pressed.
#include <unistd.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/vconf.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "voice-maker/clip-delivery.h"
#include "voice-maker/speech.h"
#include "voice-maker/synthesiser.h"
#include "voice-maker/voice-list.h"

namespace vaultpad::helpers {

namespace {

constexpr int kWrongUse = 2;
constexpr char kUsage[] =
    "usage: vault-voice-maker vaultpad TYPE\n"
    "\n"
    "Speaks the keys of a pad with espeak-ng and delivers the clips to the process that started this, over the\n"
    "abstract socket vaultpad_voice.socket. TYPE is the pad's type code: 2 keyboard; every other number PIN pad, as\n"
    "for the library. The language is the television's menu language.\n"
    "\n"
    "  --help    says this and ends\n";

std::optional<long> parseType(const char* word) {
    char* end = nullptr;
    const long type = std::strtol(word, &end, 10);
    return end != word && *end == '\0' ? std::optional<long>(type) : std::nullopt;
}

std::string applicationFile(const char* path) {
    const char* file = tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, path);
    return file != nullptr ? file : "";
}

int speak(long type) {
    const EndWatch watch;
    if (!watch.works()) {
        std::fprintf(stderr, "vault-voice-maker: the process that started this is gone\n");
        return EXIT_FAILURE;
    }
    ClipDelivery delivery(watch, getppid());
    const std::unique_ptr<char, void (*)(void*)> locale(vconf_get_str("db/menu_widget/language"), std::free);
    const Speech speech(locale.get(), applicationFile("vaultpad/res/locale"));
    const std::vector<VoiceItem> items = readVoices(applicationFile(
        type == 2 ? "vaultpad/res/xml/audio/keyboard-audio.xml" : "vaultpad/res/xml/audio/pinpad-audio.xml"));
    Synthesiser synthesiser(watch, "espeak-ng", std::clamp(std::thread::hardware_concurrency(), 2u, 8u));
    for (std::size_t i = 0; i < items.size(); ++i) {
        synthesiser.add(i, speech.utterances(items[i]));
    }
    const bool delivered = synthesiser.run([&delivery](std::size_t number, const Bytes& clip) {
        return delivery.deliver(static_cast<int>(number), clip);
    });
    return delivered ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

}  // namespace vaultpad::helpers

int main(int argc, char** argv) {
    using namespace vaultpad::helpers;
    if (argc == 2 && std::strcmp(argv[1], "--help") == 0) {
        std::fputs(kUsage, stdout);
        return EXIT_SUCCESS;
    }
    const std::optional<long> type = argc == 3 ? parseType(argv[2]) : std::nullopt;
    if (!type || std::strcmp(argv[1], "vaultpad") != 0) {
        std::fprintf(stderr, "vault-voice-maker: write the name vaultpad and a number\n%s", kUsage);
        return kWrongUse;
    }
    // What the client has open is none of a voice maker's business.
    closefrom(STDERR_FILENO + 1);
    try {
        return speak(*type);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vault-voice-maker: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
