#include "session.h"

#include <vaultpad/ta-protocol.h>

#include <algorithm>
#include <memory>

#include "decoded-text.h"
#include "killer.h"
#include "platform-faults.h"

namespace vaultpad::soak {

namespace {

constexpr int kKeyPressed = 2;
// From the start-up of the trusted application to the middle of the typing.
constexpr int kLatestKillMilliseconds = 120;

std::uint32_t orientationOf(const std::string& rotator) {
    if (rotator == "portrait") {
        return VAULTPAD_TA_ORIENTATION_PORTRAIT;
    }
    return rotator == "portrait-reversed" ? VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED
                                          : VAULTPAD_TA_ORIENTATION_LANDSCAPE;
}

// As the kernel shows them: at most 15 characters.
const char* victimOf(Disturbance disturbance) {
    switch (disturbance) {
        case Disturbance::KillTrustedApplication:
            return "vaultpad-ta";
        case Disturbance::KillHelper:
            return "vault-pad-bg";
        case Disturbance::KillVoiceMaker:
            return "vault-voice-mak";
        default:
            return nullptr;
    }
}

}  // namespace

std::string Plan::text() const {
    static const char* const names[] = {"none", "TA killed", "helper killed", "voice maker killed", "call fails"};
    return std::string(family == Family::Plain ? "plain" : "key names") +
           (type == VAULTPAD_TYPE_PINPAD ? ", PIN pad" : ", keyboard") + ", rotator " + rotator +
           (mirrored ? ", mirrored" : "") + (zoom ? ", zoom" : "") + (contrast ? ", contrast" : "") + ", " + language +
           ", " + std::to_string(digits) + " digits" + (wandering ? ", wandering" : "") +
           ", disturbance: " + names[static_cast<int>(disturbance)];
}

int SessionRunner::pick(int low, int high) {
    return std::uniform_int_distribution<int>(low, high)(random_);
}

Report SessionRunner::run(Plan plan) {
    const LayoutKey layout = {plan.type, plan.rotator, plan.mirrored, plan.zoom, plan.contrast};
    const bool known = walks_.count(layout) > 0;
    if (!known) {
        plan.disturbance = Disturbance::None;
    }
    describeTelevision(plan, layout);
    family_ = plan.family;
    client_ = pick(0, 1) == 0 ? &small_ : &large_;
    Report report;
    std::unique_ptr<Killer> killer;
    if (const char* victim = victimOf(plan.disturbance)) {
        killer = std::make_unique<Killer>(victim, std::chrono::milliseconds(pick(0, kLatestKillMilliseconds)));
    }
    countPlatformCalls(plan.disturbance == Disturbance::FailPlatformCall ? pick(1, usualCalls_) : 0);
    if (!open(plan)) {
        report.findings.push_back("the pad does not open");
    } else {
        if (!known) {
            const bool digitsOnly = plan.type == VAULTPAD_TYPE_PINPAD;
            walks_.emplace(layout, PadWalk(television_.store(), digitsOnly, orientationOf(plan.rotator)));
        }
        PadWalk& walk = walks_.at(layout);
        walk.restart();
        use(plan, walk, report);
    }
    close(report);
    report.killed = killer && killer->stop();
    report.failedCall = failedPlatformCall();
    report.disturbed = report.failedCall != nullptr || (report.killed && plan.disturbance != Disturbance::KillHelper);
    if (report.disturbed) {
        report.findings.clear();
    } else {
        usualCalls_ = platformCalls();
    }
    return report;
}

// The first pad of a layout is stored, and what is known of its keys is read from there.
void SessionRunner::describeTelevision(const Plan& plan, const LayoutKey& layout) {
    television_.unset("secure-world", "store");
    if (walks_.count(layout) == 0) {
        television_.set("secure-world", "store", television_.store().string());
    }
    television_.set("log", "target", "none")
        .set("secure-world", "log", "none")
        .set("orientation", "rotator", plan.rotator)
        .set("orientation", "mirrored", plan.mirrored ? "true" : "false")
        .set("settings", "focus-zoom", plan.zoom ? "1" : "0")
        .set("settings", "high-contrast", plan.contrast ? "1" : "0")
        .set("settings", "language", plan.language)
        .apply();
}

bool SessionRunner::open(const Plan& plan) {
    if (plan.family == Family::KeyNames) {
        return client_->open(plan.type, plan.digits) == 0;
    }
    return vault_pad_session() == 1 && vault_pad_create(plan.type, plan.digits) == 0 && client_->setPublicKey() == 0;
}

SessionRunner::Press SessionRunner::press(const std::string& key) {
    if (family_ == Family::KeyNames) {
        const EventResult event = client_->press(key);
        return {event.result == 0, event.closed == 1, event.value};
    }
    const char* name = key.c_str();
    const bool taken = vault_pad_event(kKeyPressed, &name) == 0;
    return {taken, is_vault_pad_close() == 1, app_data.ta_value};
}

void SessionRunner::use(const Plan& plan, PadWalk& walk, Report& report) {
    const std::optional<std::u16string> typed =
        plan.wandering ? wander(plan, walk, report) : typeWantedKeys(plan, walk, report);
    if (typed && report.findings.empty()) {
        checkResult(*typed, report);
    }
}

// Presses "Right,Right,Return"-like keys; the last of them closes the pad, or none does.
bool SessionRunner::pressWay(const std::string& way, bool closes, Report& report) {
    for (std::size_t start = 0; start < way.size();) {
        const std::size_t end = std::min(way.find(',', start), way.size());
        const Press pressed = press(way.substr(start, end - start));
        const bool last = end == way.size();
        if (!pressed.taken || pressed.closed != (closes && last)) {
            report.findings.push_back(pressed.taken ? "the pad closes at another key" : "a key is refused");
            return false;
        }
        start = end + 1;
    }
    return true;
}

std::optional<std::u16string> SessionRunner::typeWantedKeys(const Plan& plan, PadWalk& walk, Report& report) {
    using secureworld::KeyAction;
    std::vector<std::size_t> characters;
    std::size_t done = 0;
    for (std::size_t i = 0; i < walk.keys().size(); ++i) {
        const KeyAction::Kind kind = walk.keys()[i].action.kind;
        if (kind == KeyAction::Kind::Type) {
            characters.push_back(i);
        } else if (kind == KeyAction::Kind::Complete) {
            done = i;
        }
    }
    const int wanted = plan.digits > 0 ? plan.digits : pick(1, 8);
    std::u16string typed;
    for (int i = 1; i <= wanted; ++i) {
        const std::size_t key = characters[static_cast<std::size_t>(pick(0, static_cast<int>(characters.size()) - 1))];
        const std::optional<std::string> way = walk.press(key);
        if (!way || !pressWay(*way, i == plan.digits, report)) {
            return std::nullopt;
        }
        typed += walk.keys()[key].action.character;
    }
    if (plan.digits == 0 && !pressWay(walk.press(done).value_or(""), true, report)) {
        return std::nullopt;
    }
    return typed;
}

void SessionRunner::checkResult(const std::u16string& typed, Report& report) {
    const std::string text = typed.empty() ? "" : decodedText(typed);
    if (vault_pad_check_enc_len() != (typed.empty() ? 0 : 1)) {
        report.findings.push_back(typed.empty() ? "a pad that was left has a result" : "there is no result");
    } else if (!typed.empty() && app_data.ta_value != typed.size()) {
        report.findings.push_back("the number of characters is wrong");
    } else if (!typed.empty() && client_->decrypt() != text) {
        report.findings.push_back("what is decrypted is not what was typed");
    } else {
        report.completed = !typed.empty();
    }
}

// Where a failing call keeps the session from closing (the privilege is denied, say) the next attempt must do it.
void SessionRunner::close(Report& report) {
    const bool closed = app == nullptr || vault_pad_close() == 0;
    const bool disturbed = failedPlatformCall() != nullptr;
    if (!closed && (!disturbed || vault_pad_close() != 0)) {
        report.findings.push_back("the session does not close");
    }
}

}  // namespace vaultpad::soak
