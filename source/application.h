/* The controller: start-up, show, key events, shut-down. */
#ifndef VAULTPAD_SOURCE_APPLICATION_H
#define VAULTPAD_SOURCE_APPLICATION_H

#include <vaultpad/vaultpad.h>

#include <memory>

#include "communication/tee-client.h"
#include "context/application-context-parser.h"
#include "graphic/object-renderer.h"
#include "toolkit-session.h"

namespace vaultpad {

/*
 * A process-wide singleton. constructed -> (vault_pad_init) initialized -> (vault_pad_show) shown -> destroyed.
 * Everything runs on the caller's thread.
 */
class Application {
public:
    /* Finds the singleton, or makes it. */
    static Application* instance();

    /* Deletes the singleton, if any. */
    static void destroy();

    /*
     * The start-up sequence, once: nothing happens when it has succeeded before. Returns with the pad not initialized
     * when keys cannot be grabbed. Throws exception::Exception when the TA session cannot be opened, the renderer
     * cannot be set up, or the layout cannot be read.
     */
    void vault_pad_init(int ime_type, int extra, bool use_keyrouter);

    /* Uploads and shows the pad; starts it up first if that has not succeeded yet. Failures are logged. */
    void vault_pad_show();

    /* Event 3, see TeeClient::send_public_key. */
    int vault_pad_params_set(unsigned int keyWord1, unsigned int keyWord2, void* keyBlob, unsigned int keyPart1Length,
                             unsigned int keyPart2Length, void* auxBlob, unsigned int auxLength);

    /*
     * One key. event_type 3 is ignored. event_data: the address of a const char* with the key's name. result: receives
     * the TA's answer. Returns 0, or -1 when the TA failed.
     */
    int vault_pad_event(int event_type, void* event_data, AppResult* result);

    bool vault_pad_button_press() const { return button_pressed_; }
    bool is_vault_pad_close() const { return closed_; }

    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

private:
    Application();
    ~Application();

    void applyLanguage();
    bool grabKeys();
    void storeType(int ime_type, int extra);
    void startHelper();
    void renderLayout(int focusZoom, int highContrast, int orientation);
    static void destroyVoiceGuide() noexcept;
    void leave(AppResult* result);
    void changeVolume(const char* keyName);

    std::shared_ptr<context::ApplicationContextParser> parser_;
    std::shared_ptr<graphic::ObjectRenderer> renderer_;
    std::shared_ptr<communication::TeeClient> tee_;
    bool initialized_ = false;
    bool button_pressed_ = true;
    bool closed_ = false;
    bool use_keyrouter_ = true;
    int ime_type_ = 0;
    int extra_ = 0;
    bool oMode_ = false;
    int bg_pid_ = -1;
    std::unique_ptr<ToolkitSession> toolkit_;

    static Application* instance_;
};

}  // namespace vaultpad

#endif
