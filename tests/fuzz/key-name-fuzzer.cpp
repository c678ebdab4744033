// Key names: those that the client passes in, and those in the ids of a layout's keys.
#include <vaultpad/vaultpad.h>

#include "application.h"
#include "byte-core.h"
#include "fuzzer.h"
#include "pad/image-id.h"
#include "pad/key-action.h"
#include "platform-double.h"
#include "voice-decision-double.h"

using vaultpad::fuzz::Input;
using vaultpad::fuzz::require;

namespace {

vaultpad::Application* createdApplication() {
    // Unless the guide may run, the volume keys do nothing.
    vaultpad::test::voiceDecision = 1;
    vaultpad::test::platform().television.settings["memory/bluetooth/stream_status"] = 0;
    return vaultpad::Application::instance();
}

void pressForClient(int eventType, std::uint8_t answer, const std::string& name) {
    app = createdApplication();
    vaultpad::test::platform().clearJournal();
    vaultpad::test::platform().clearLog();
    vaultpad::fuzz::byteCore() = {};
    vaultpad::fuzz::byteCore().answer.assign(5 * sizeof(std::uint32_t) + answer, answer);
    unsigned int value = 0;
    unsigned int closed = 0;
    CsapiVPADevent(name.c_str(), &value, &closed);
    require(closed <= 1);
    const char* text = name.c_str();
    vault_pad_event(eventType, &text);
    require(app_data.enc_key_len <= sizeof(app_data.enc_key) && app_data.enc_data_len <= sizeof(app_data.enc_data));
}

void readInLayout(const std::string& name) {
    for (const std::string& id : {name, "key." + name + ".normal", "key." + name + ".focus", name + ".background"}) {
        const auto parsed = vaultpad::secureworld::parseImageId(id);
        if (parsed && parsed->kind == vaultpad::secureworld::ImageKind::Key) {
            for (const bool digitsOnly : {false, true}) {
                vaultpad::secureworld::actionOf(*parsed, digitsOnly);
            }
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const int eventType = input.byte();
    const std::uint8_t answer = input.byte();
    const std::string name = input.text(size);
    pressForClient(eventType, answer, name);
    readInLayout(name);
    return 0;
}
