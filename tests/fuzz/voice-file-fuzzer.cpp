// A voice file.
#include "context/application-context-parser.h"
#include "fuzzer.h"
#include "xml-fixture.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static vaultpad::fuzz::XmlFixture resources;
    resources.write("audio/keyboard-audio.xml", data, size);
    try {
        vaultpad::context::ApplicationContextParser parser;
        const auto container = parser.parseAudio(2);
        for (const auto& [id, voice] : *container->getVoices()) {
            vaultpad::fuzz::require(voice != nullptr && voice->attribute("id") == id);
        }
    } catch (const vaultpad::exception::Exception&) {
        // How the parser says that it cannot read a file.
    }
    return 0;
}
