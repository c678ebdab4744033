#include "session/session.h"

#include <cstddef>
#include <exception>
#include <utility>

#include "pad/turn.h"
#include "session/pad-place.h"
#include "session/refusal.h"
#include "session/store-dump.h"
#include "session/text.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

namespace {

// What is spoken when the pad opens, before its focused key.
constexpr const char* kTitleClip = "label.title";

}  // namespace

Session::Session(Screen* screen, VoiceOutput* voice, Log* log, std::string storeFolder)
    : screen_(screen), log_(log), storeFolder_(std::move(storeFolder)), speaker_(voice, log) {}

Answer Session::handle(std::uint32_t event, const RequestBytes& request) {
    switch (event) {
        case VAULTPAD_TA_EVENT_IMAGE_DATA:
            takeImages(request);
            break;
        case VAULTPAD_TA_EVENT_SHOW:
            show(request);
            break;
        case VAULTPAD_TA_EVENT_KEY:
            return pressKey(request);
        case VAULTPAD_TA_EVENT_PUBLIC_KEY:
            takePublicKey(request);
            break;
        case VAULTPAD_TA_EVENT_VOICE_DATA:
            takeVoiceClips(request);
            break;
        case VAULTPAD_TA_EVENT_IME_TYPE:
            takePadType(request);
            break;
        case VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR:
            refreshLoadingBar(request);
            break;
        case VAULTPAD_TA_EVENT_IMAGE_DONE:
            endImages(request);
            break;
        case VAULTPAD_TA_EVENT_RENDER_CONTEXT:
            takeRenderContext(request);
            break;
        default:
            throw Refusal("there is no such event");
    }
    return {};
}

void Session::requireThat(bool condition, const char* reason) const {
    if (!condition) {
        throw Refusal(reason);
    }
}

void Session::takePadType(const RequestBytes& request) {
    requireThat(images_.empty(), "the pad's type cannot change once images have arrived");
    const PadType type = readPadType(request);
    screen_->setSize(viewerScreen(type));
    type_ = type;
}

void Session::takeRenderContext(const RequestBytes& request) {
    checkRenderContext(request);
    renderContext_ = true;
}

void Session::takeImages(const RequestBytes& request) {
    requireThat(type_.has_value(), "images before the pad's type");
    requireThat(renderContext_, "images before the trusted-UI description");
    requireThat(!imagesDone_, "images after the end of the images");
    images_.add(readImages(request, *type_));
}

void Session::endImages(const RequestBytes& request) {
    checkEmpty(request);
    requireThat(renderContext_, "the end of the images before the trusted-UI description");
    if (!imagesDone_ && !storeFolder_.empty()) {
        dumpStore(images_, storeFolder_);
    }
    imagesDone_ = true;
}

void Session::takeVoiceClips(const RequestBytes& request) {
    requireThat(imagesDone_, "voice clips before the end of the images");
    speaker_.add(readVoiceClips(request));
}

void Session::takePublicKey(const RequestBytes& request) {
    // Otherwise a text could be had under another key than the one it was typed for.
    requireThat(!typed_, "a public key after the first character");
    publicKey_ = readPublicKey(request);
}

void Session::refreshLoadingBar(const RequestBytes& request) {
    checkEmpty(request);
    requireThat(type_.has_value(), "a loading bar before the pad's type");
    if (stage_ == Stage::Preparing) {
        screen_->showLoadingBar(expectedArea(*type_), loadingSteps_ + 1);
        ++loadingSteps_;
    }
}

void Session::show(const RequestBytes& request) {
    checkEmpty(request);
    requireThat(type_.has_value(), "a show before the pad's type");
    requireThat(renderContext_, "a show before the trusted-UI description");
    requireThat(imagesDone_, "a show before the end of the images");
    requireThat(!images_.empty(), "a show without images");
    if (!pad_) {
        buildPad();
    }
    if (stage_ != Stage::Shown) {
        entry_->restart();
    }
    draw();
    if (stage_ != Stage::Shown) {
        typed_ = false;
        stage_ = Stage::Shown;
        log_->line("pad shown, " + std::to_string(images_.images().size()) + " images");
        speaker_.speak({kTitleClip, focusedClip()});
    }
}

void Session::buildPad() {
    std::vector<PadImage> padImages;
    for (const StoredImage& image : images_.images()) {
        padImages.push_back({image.id, viewerPlace(image.panelPlace, *type_)});
    }
    std::vector<std::string> remarks;
    const PadRules rules = {type_->type == VAULTPAD_TA_IME_PINPAD, type_->rightToLeft};
    pad_.emplace(padImages, rules, &remarks);
    entry_.emplace(*pad_, type_->completeAt);
    bitmaps_.resize(padImages.size());
    for (const std::string& remark : remarks) {
        log_->line(escaped(remark));
    }
}

void Session::draw() {
    if (!screen_->wantsPictures()) {
        return;
    }
    std::vector<Layer> layers;
    for (const Drawing& drawing : entry_->drawings()) {
        Bitmap& bitmap = bitmaps_[drawing.image];
        if (bitmap.pixels.empty()) {
            const StoredImage& image = images_.images()[drawing.image];
            bitmap = unpack(image.pixels.begin(), {image.panelPlace.width, image.panelPlace.height},
                            panelToViewer(type_->orientation));
        }
        layers.push_back({&bitmap, drawing.place.x, drawing.place.y});
    }
    screen_->showPad(layers, pad_->area());
}

std::string Session::focusedClip() const {
    const std::size_t key = entry_->focusedKey();
    return key == Pad::kNoKey ? "" : clipIdOf(images_.images()[pad_->keys()[key].focusImage].id);
}

// What a key did stands, whatever becomes of its picture.
void Session::tryOnDisplay(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        log_->line(std::string("the display fails: ") + error.what());
    }
}

Answer Session::pressKey(const RequestBytes& request) {
    requireThat(stage_ != Stage::Preparing, "a key before the show");
    requireThat(stage_ != Stage::Closed, "a key after the pad was closed");
    const std::uint32_t keyCode = readKey(request);
    if (screen_->closedByViewer()) {
        close("left by its window");
        Answer answer;
        answer.pressed = true;
        answer.closed = true;
        return answer;
    }
    if (keyCode == VAULTPAD_TA_KEY_RETURN && entry_->returnCompletes()) {
        requireThat(publicKey_.has_value(), "the input cannot complete without a public key");
    }
    return pressOnPad(keyCode);
}

Answer Session::pressOnPad(std::uint32_t keyCode) {
    Answer answer;
    const std::size_t before = entry_->text().size();
    const std::size_t focused = entry_->focusedKey();
    switch (entry_->press(keyCode)) {
        case PadEntry::Effect::Nothing:
            return answer;
        case PadEntry::Effect::Changed:
            tryOnDisplay([this] { draw(); });
            typed_ = typed_ || !entry_->text().empty();
            // The focus alone is spoken: what a key types, a loudspeaker must not repeat.
            if (entry_->focusedKey() != focused) {
                speaker_.speak({focusedClip()});
            }
            break;
        case PadEntry::Effect::Completed:
            try {
                encryptText(entry_->text(), *publicKey_, &workPage_, &answer);
            } catch (...) {
                while (entry_->text().size() > before) {
                    entry_->text().removeLast();
                }
                throw;
            }
            close("completed");
            answer.closed = true;
            break;
        case PadEntry::Effect::Cancelled:
            close("cancelled");
            answer.closed = true;
            break;
    }
    answer.pressed = true;
    return answer;
}

void Session::close(const char* how) {
    entry_->restart();
    stage_ = Stage::Closed;
    speaker_.speak({});
    tryOnDisplay([this] { screen_->hide(); });
    log_->line(std::string("pad ") + how);
}

}  // namespace vaultpad::secureworld
