#include "application.h"

#include <libintl.h>
#include <signal.h>
#include <vaultpad-platform/tzplatform-config.h>
#include <vaultpad-platform/ui-orientation.h>
#include <vaultpad-platform/vconf.h>

#include <clocale>
#include <cstdlib>
#include <new>
#include <string>

#include "audio/voice-guide.h"
#include "background-helper.h"
#include "exception.h"
#include "log.h"
#include "orientation.h"
#include "vault_pad_keyrouter.h"

namespace vaultpad {

using audio::VoiceGuide;

namespace {

constexpr const char* kTextDomain = "vaultpad";

void onUserSignal(int) {
    CA_LOG_INFO("signal handler for SIGUSR2.");
}

int accessibilitySetting(const char* key) {
    int value = 0;
    return vconf_get_int(key, &value) < 0 ? 0 : value;
}

}  // namespace

Application* Application::instance_ = nullptr;

Application* Application::instance() {
    if (instance_ == nullptr) {
        instance_ = new Application;
    }
    return instance_;
}

void Application::destroy() {
    if (instance_ == nullptr) {
        return;
    }
    CA_LOG_INFO("called;");
    delete instance_;
    instance_ = nullptr;
}

Application::Application()
    : parser_(std::make_shared<context::ApplicationContextParser>()),
      renderer_(std::make_shared<graphic::ObjectRenderer>()),
      tee_(std::make_shared<communication::TeeClient>()) {
    applyLanguage();
    oMode_ = ua_UI_orientation_get() != 0;
    VoiceGuide::instance().initialize();
    closed_ = false;
    button_pressed_ = true;
}

void Application::applyLanguage() {
    char* language = vconf_get_str("db/menu_widget/language");
    // Without a setting the client's locale stays: setlocale() with null only asks.
    setlocale(LC_ALL, language);
    const char* catalogues = tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, "vaultpad/res/locale");
    bindtextdomain(kTextDomain, catalogues);
    textdomain(kTextDomain);
    std::free(language);
}

// The guide is made to be destroyed where none exists. A destructor must not throw when there is no memory for that.
void Application::destroyVoiceGuide() noexcept {
    try {
        VoiceGuide::instance();
    } catch (const std::bad_alloc&) {
        CA_LOG_ERROR("memory allocation fail;");
    }
    VoiceGuide::destroy();
}

Application::~Application() {
    CA_LOG_INFO("called;");
    if (use_keyrouter_ && initialized_) {
        vault_pad_keyrouter_ungrab();
        vault_pad_keyrouter_finalize();
    }
    killBackgroundHelper(bg_pid_);
    tee_->exit();
    destroyVoiceGuide();
    tee_.reset();
    renderer_.reset();
    parser_.reset();
    toolkit_.reset();
    reapBackgroundHelpers();
}

void Application::vault_pad_init(int ime_type, int extra, bool use_keyrouter) {
    CA_LOG_INFO("called;");
    if (initialized_) {
        return;
    }
    use_keyrouter_ = use_keyrouter;
    if (!toolkit_) {
        toolkit_ = std::make_unique<ToolkitSession>();
        // Evas keeps the language that it met first, and with it the country's shapes of Chinese characters.
        evas_language_reinit();
    }
    if (use_keyrouter_ && !grabKeys()) {
        return;
    }
    const int result = tee_->init();
    if (result != 0) {
        throw exception::Exception("To initialize tee client is failed, ret: " + std::to_string(result));
    }
    storeType(ime_type, extra);
    const int focusZoom = accessibilitySetting("db/menu/system/accessibility/focuszoom");
    const int highContrast = accessibilitySetting("db/menu/system/accessibility/highcontrast");
    startHelper();
    signal(SIGUSR2, onUserSignal);
    renderer_->lazyInit();
    const int orientation = checkCurrentOrientation();
    tee_->orientation_ = orientation;
    tee_->send_ime_type(ime_type_, extra_, focusZoom, highContrast, oMode_);
    if (VoiceGuide::instance().enabled()) {
        VoiceGuide::instance().create(ime_type_);
    }
    renderLayout(focusZoom, highContrast, orientation);
    if (VoiceGuide::instance().enabled()) {
        VoiceGuide::instance().waitComplete();
    }
    initialized_ = true;
}

bool Application::grabKeys() {
    toolkit_->bringUpWindows();
    if (!vault_pad_keyrouter_is_initialized() && !vault_pad_keyrouter_initialize()) {
        CA_LOG_ERROR("Failed to initialize keyrouter.");
        return false;
    }
    if (!vault_pad_keyrouter_grab()) {
        vault_pad_keyrouter_finalize();
        CA_LOG_ERROR("Failed to grab all keys.");
        return false;
    }
    return true;
}

void Application::storeType(int ime_type, int extra) {
    if (ime_type == VAULTPAD_TYPE_PINPAD || ime_type == VAULTPAD_TYPE_KEYBOARD) {
        ime_type_ = ime_type;
    } else {
        CA_LOG_ERROR("vault_pad_init failed; wrong ime type");
    }
    extra_ = ime_type_ == VAULTPAD_TYPE_KEYBOARD ? 0 : extra;
}

void Application::startHelper() {
    const char* voiceConnection = VoiceGuide::instance().networkSpeaker() ? "connect" : "disconnect";
    const char* mode = ime_type_ == VAULTPAD_TYPE_KEYBOARD ? "keyboard" : "numpad";
    bg_pid_ = startBackgroundHelper(mode, voiceConnection);
}

void Application::renderLayout(int focusZoom, int highContrast, int orientation) {
    parser_->setMode(focusZoom, highContrast, ime_type_, oMode_, orientation);
    const std::shared_ptr<context::ElementContainer> container = parser_->parse();
    // render() returns true on every path, so this runs once; a renderer that asks for another pass would get it.
    while (!renderer_->render(
        container, [this](graphic::Canvas& canvas) { tee_->loadImage(canvas); },
        [](std::string error) { CA_LOG_ERROR("%s", error.c_str()); })) {
    }
}

void Application::vault_pad_show() {
    CA_LOG_INFO("called;");
    if (!initialized_) {
        vault_pad_init(ime_type_, extra_, use_keyrouter_);
    }
    const int sent = tee_->send_data_to_ta();
    if (sent != 0) {
        CA_LOG_ERROR("failed to send data to TA, ret: %d", sent);
    }
    killBackgroundHelper(bg_pid_);
    const int shown = tee_->show();
    if (shown != 0) {
        CA_LOG_ERROR("failed to show vaultpad, ret: %d", shown);
    }
}

int Application::vault_pad_params_set(unsigned int keyWord1, unsigned int keyWord2, void* keyBlob,
                                      unsigned int keyPart1Length, unsigned int keyPart2Length, void* auxBlob,
                                      unsigned int auxLength) {
    return tee_->send_public_key(keyWord1, keyWord2, keyBlob, keyPart1Length, keyPart2Length, auxBlob, auxLength);
}

}  // namespace vaultpad
