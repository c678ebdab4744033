#include "whole-session.h"

#include <atomic>
#include <new>
#include <ostream>

#include "audio/voice-guide.h"
#include "client-calls.h"
#include "voice-decision-double.h"
#include "voice-maker-stand-in.h"

namespace vaultpad::test {

namespace {

// A key with a nested label of both kinds, and a key that is a picture: all that the renderer draws.
constexpr const char* kLayout = R"(<layout>
    <fonts><font id="plain" family="Sans" size="9" color="FF8000"/></fonts>
    <images basedir="/images"><image id="box" type="rectangle" width="60" height="30"/>
        <image id="file" type="file" url="missing.png"/></images>
    <strings><string id="one" value="1" i18n="true"/></strings>
    <objects>
        <object id="key.1.normal" type="image" ref="box" x="5" y="6">
            <object type="text" ref="one" font="plain" text-align="center" line-height="inherit"/>
            <object type="image" ref="box" left="1" top="1"/>
        </object>
        <object id="key.2.normal" type="image" ref="box" x="70" y="6"/>
    </objects></layout>)";
constexpr const char* kVoices = R"(<audio><voices><voice id="one"/><voice id="two"/></voices></audio>)";
constexpr int kVoiceCount = 2;
constexpr float kSensorPortrait = 2;
// Long for a maker on a thread of the same process, short for a test that sees it fail to come.
constexpr std::chrono::seconds kVoiceLimit{1};

}  // namespace

std::vector<SessionKind> sessionKinds() {
    std::vector<SessionKind> kinds;
    for (const bool plain : {false, true}) {
        for (const bool keyboard : {false, true}) {
            for (const bool speaks : {false, true}) {
                const std::string family = plain ? "PlainFamily" : "KeyNameFamily";
                const std::string pad = keyboard ? "Keyboard" : "PinPad";
                kinds.push_back({{family + pad + (speaks ? "Speaking" : "Silent")}, plain, keyboard, speaks});
            }
        }
    }
    return kinds;
}

bool operator==(const StepOutcome& one, const StepOutcome& other) {
    return one.step == other.step && one.result == other.result && one.detail == other.detail &&
           one.errors == other.errors && one.outOfMemory == other.outOfMemory;
}

std::ostream& operator<<(std::ostream& out, const StepOutcome& step) {
    return out << step.step << " " << step.result << (step.outOfMemory ? " std::bad_alloc" : "") << " \"" << step.detail
               << "\" " << testing::PrintToString(step.errors);
}

WholeSessionTest::WholeSessionTest() {
    for (const char* file : {"normal/pinpad.xml", "normal/keyboard.xml", "vertical_normal/vertical-keyboard.xml"}) {
        writeLayout(file, kLayout);
    }
    folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", kVoices);
    folder_.write("vaultpad/res/xml/audio/keyboard-audio.xml", kVoices);
    Television& television = platform().television;
    television.settings["memory/bluetooth/stream_status"] = 1;
    vaultpad_test_efl.wayland_connected = true;
    vaultpad_test_efl.has_key_router = true;
    libc().sleepsAreFake = true;
    audio::VoiceGuide::waitLimit = kVoiceLimit;
}

WholeSessionTest::~WholeSessionTest() {
    closeWhatIsLeft();
    audio::VoiceGuide::waitLimit = std::chrono::seconds(30);
}

void WholeSessionTest::freshTelevision(const SessionKind& kind) {
    Television television = platform().television;
    platform().reset();
    television.volume = 20;
    hasVoiceMaker = true;
    television.sensorValue = kind.keyboard ? kSensorPortrait : 0;
    platform().television = television;
    voiceDecision = kind.speaks ? 1 : 0;
    app_data = {};
    stepOfCall_.clear();
}

Outcome WholeSessionTest::run(const SessionKind& kind, const std::function<void()>& prepare) {
    freshTelevision(kind);
    VoiceMakerStandIn maker;
    std::atomic<int> forks{0};
    platform().observer = [&](const std::string& function) {
        // The background helper is forked first, the voice maker second.
        if (function == "fork" && ++forks == 2 && hasVoiceMaker) {
            maker.start(kVoiceCount);
        }
    };
    if (prepare) {
        prepare();
    }
    Outcome outcome;
    for (const ClientCall& call : clientCalls(kind)) {
        StepOutcome step;
        step.step = call.name;
        const std::size_t logged = platform().errors().size();
        try {
            call.run(step);
        } catch (const std::bad_alloc&) {
            step.outOfMemory = true;
        }
        const Strings errors = platform().errors();
        step.errors.assign(errors.begin() + static_cast<std::ptrdiff_t>(logged), errors.end());
        stepOfCall_.resize(platform().journal().size(), call.name);
        outcome.push_back(step);
    }
    maker.stop();
    platform().observer = nullptr;
    return outcome;
}

void WholeSessionTest::closeWhatIsLeft() {
    if (app != nullptr) {
        platform().clearLog();
        EXPECT_EQ(vault_pad_close(), 0);
    }
}

}  // namespace vaultpad::test
