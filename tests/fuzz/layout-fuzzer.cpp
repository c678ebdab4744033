// A layout, all the way: parsed, drawn, packed for each orientation, sent in batches, and read by the emulated TA.
#include <Ecore.h>
#include <vaultpad/ta-protocol.h>

#include <memory>

#include "byte-core.h"
#include "communication/tee-client.h"
#include "context/application-context-parser.h"
#include "fuzzer.h"
#include "graphic/object-renderer.h"
#include "request.h"
#include "runtime-folder.h"
#include "session/refusal.h"
#include "toolkit-session.h"
#include "xml-fixture.h"

using vaultpad::communication::TeeClient;
using vaultpad::context::ElementContainer;

namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 200;

// What the library writes, the TA can read; it may still refuse it, for instance for a place beyond the screen.
int readByTa(std::uint32_t event, const std::vector<std::uint8_t>& request) {
    vaultpad::fuzz::require(event == VAULTPAD_TA_EVENT_IMAGE_DATA);
    try {
        vaultpad::secureworld::readImages(vaultpad::fuzz::requestOf(request), {});
        return 0;
    } catch (const vaultpad::secureworld::Refusal&) {
        return -1;
    }
}

// A drawing that failed leaves the main-loop lock held.
void releaseMainLoop() {
    for (int depth = ecore_thread_main_loop_begin(); depth > 0; --depth) {
        ecore_thread_main_loop_end();
    }
}

void draw(const std::shared_ptr<ElementContainer>& container) {
    const int orientations[] = {VAULTPAD_TA_ORIENTATION_LANDSCAPE, VAULTPAD_TA_ORIENTATION_PORTRAIT,
                                VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED};
    std::vector<std::unique_ptr<TeeClient>> clients;
    for (const int orientation : orientations) {
        clients.push_back(std::make_unique<TeeClient>());
        clients.back()->orientation_ = orientation;
        clients.back()->send_ime_type(VAULTPAD_TA_IME_KEYBOARD, 0, 0, 0, 0);
    }
    vaultpad::fuzz::byteCore().onEvent = readByTa;
    vaultpad::graphic::ObjectRenderer renderer(kWidth, kHeight);
    const auto onCanvas = [&clients](vaultpad::graphic::Canvas& canvas) {
        for (const auto& client : clients) {
            client->loadImage(canvas);
        }
    };
    vaultpad::fuzz::require(renderer.render(container, onCanvas, [](const std::string&) {}));
    releaseMainLoop();
    for (const auto& client : clients) {
        while (client->send_image_data() == 0) {
        }
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const vaultpad::test::RuntimeFolder runtime;
    static const vaultpad::ToolkitSession toolkit;
    static vaultpad::fuzz::XmlFixture resources;
    resources.write("normal/pinpad.xml", data, size);
    vaultpad::fuzz::byteCore() = {};
    try {
        vaultpad::context::ApplicationContextParser parser;
        parser.setMode(0, 0, VAULTPAD_TA_IME_PINPAD, 0, 0);
        draw(parser.parse());
    } catch (const vaultpad::exception::Exception&) {
        // How the parser says that it cannot read a file.
    }
    return 0;
}
