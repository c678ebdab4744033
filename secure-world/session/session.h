// One session with the client: keeps the protocol's order and carries its events out.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_SESSION_H
#define VAULTPAD_SECURE_WORLD_SESSION_SESSION_H

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "display/bitmap.h"
#include "display/screen.h"
#include "log.h"
#include "pad/locked-page.h"
#include "pad/pad-entry.h"
#include "pad/pad.h"
#include "session/answer.h"
#include "session/image-store.h"
#include "session/public-key.h"
#include "session/request-bytes.h"
#include "session/requests.h"
#include "voice/speaker.h"

namespace vaultpad::secureworld {

class Session {
public:
    // screen, voice and log must outlive the session. storeFolder: where the image store is written to for tests, or
    // empty.
    Session(Screen* screen, VoiceOutput* voice, Log* log, std::string storeFolder);

    // Carries out an event (a VaultPadTaEvent). Returns the answer, which only a key event has something to tell in.
    // Throws Refusal, or another std::exception when something fails; the session is unchanged then.
    Answer handle(std::uint32_t event, const RequestBytes& request);

private:
    enum class Stage { Preparing, Shown, Closed };

    void takePadType(const RequestBytes& request);
    void takeRenderContext(const RequestBytes& request);
    void takeImages(const RequestBytes& request);
    void endImages(const RequestBytes& request);
    void takeVoiceClips(const RequestBytes& request);
    void takePublicKey(const RequestBytes& request);
    void refreshLoadingBar(const RequestBytes& request);
    void show(const RequestBytes& request);
    Answer pressKey(const RequestBytes& request);
    Answer pressOnPad(std::uint32_t keyCode);
    void close(const char* how);
    void buildPad();
    void draw();
    std::string focusedClip() const;
    void tryOnDisplay(const std::function<void()>& action);
    void requireThat(bool condition, const char* reason) const;

    Screen* screen_;
    Log* log_;
    std::string storeFolder_;
    LockedPage workPage_;
    std::optional<PadType> type_;
    bool renderContext_ = false;
    bool imagesDone_ = false;
    ImageStore images_;
    Speaker speaker_;
    std::optional<PublicKey> publicKey_;
    std::optional<Pad> pad_;         // from the first show on
    std::optional<PadEntry> entry_;  // likewise
    std::vector<Bitmap> bitmaps_;    // unpacked images, each from its first drawing on
    unsigned loadingSteps_ = 0;
    bool typed_ = false;  // a character has been typed in the current entry
    Stage stage_ = Stage::Preparing;
};

}  // namespace vaultpad::secureworld

#endif
