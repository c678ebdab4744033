#include "pad/pad-entry.h"

#include <algorithm>
#include <optional>

#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {

PadEntry::PadEntry(const Pad& pad, std::size_t completeAt) : pad_(pad), completeAt_(completeAt) {
    restart();
}

void PadEntry::restart() {
    text_.wipe();
    page_ = pad_.startPage();
    const std::vector<std::size_t> keys = pad_.keysOn(page_);
    focusedKey_ = keys.empty() ? Pad::kNoKey : keys[readingOrder(places(keys)).front()];
}

std::vector<Rect> PadEntry::places(const std::vector<std::size_t>& keys) const {
    std::vector<Rect> result;
    result.reserve(keys.size());
    for (const std::size_t key : keys) {
        result.push_back(pad_.keys()[key].place);
    }
    return result;
}

const KeyAction* PadEntry::focusedAction() const {
    return focusedKey_ == Pad::kNoKey ? nullptr : &pad_.keys()[focusedKey_].action;
}

bool PadEntry::typingCompletes() const {
    return completeAt_ != 0 && text_.size() + 1 >= completeAt_;
}

bool PadEntry::returnCompletes() const {
    const KeyAction* action = focusedAction();
    if (!action) {
        return false;
    }
    return (action->kind == KeyAction::Kind::Complete && !text_.empty()) ||
           (action->kind == KeyAction::Kind::Type && typingCompletes());
}

PadEntry::Effect PadEntry::press(std::uint32_t keyCode) {
    switch (keyCode) {
        case VAULTPAD_TA_KEY_UP:
            return move(Direction::Up);
        case VAULTPAD_TA_KEY_DOWN:
            return move(Direction::Down);
        case VAULTPAD_TA_KEY_LEFT:
            return move(Direction::Left);
        case VAULTPAD_TA_KEY_RIGHT:
            return move(Direction::Right);
        case VAULTPAD_TA_KEY_RETURN:
            return act();
        default:
            return Effect::Nothing;
    }
}

PadEntry::Effect PadEntry::move(Direction direction) {
    const std::vector<std::size_t> keys = pad_.keysOn(page_);
    const auto focused = std::find(keys.begin(), keys.end(), focusedKey_);
    if (focused == keys.end()) {
        return Effect::Nothing;
    }
    const auto position = static_cast<std::size_t>(focused - keys.begin());
    const std::optional<std::size_t> next = nextKey(places(keys), position, direction);
    if (!next) {
        return Effect::Nothing;
    }
    focusedKey_ = keys[*next];
    return Effect::Changed;
}

PadEntry::Effect PadEntry::act() {
    const KeyAction* action = focusedAction();
    if (!action) {
        return Effect::Nothing;
    }
    switch (action->kind) {
        case KeyAction::Kind::Type:
            return type(action->character);
        case KeyAction::Kind::TakeBack:
            return text_.removeLast() ? Effect::Changed : Effect::Nothing;
        case KeyAction::Kind::Clear: {
            const bool changes = !text_.empty();
            text_.wipe();
            return changes ? Effect::Changed : Effect::Nothing;
        }
        case KeyAction::Kind::Complete:
            return text_.empty() ? Effect::Nothing : Effect::Completed;
        case KeyAction::Kind::Cancel:
            text_.wipe();
            return Effect::Cancelled;
        case KeyAction::Kind::ShowPage:
            return showPage(action->page);
        case KeyAction::Kind::Nothing:
            break;
    }
    return Effect::Nothing;
}

PadEntry::Effect PadEntry::type(char16_t character) {
    const bool completes = typingCompletes();
    if (!text_.append(character)) {
        return Effect::Nothing;
    }
    return completes ? Effect::Completed : Effect::Changed;
}

PadEntry::Effect PadEntry::showPage(const std::string& page) {
    if (page == page_ || !pad_.hasPage(page)) {
        return Effect::Nothing;
    }
    const Rect place = pad_.keys()[focusedKey_].place;
    page_ = page;
    focusNearest(place);
    return Effect::Changed;
}

void PadEntry::focusNearest(const Rect& place) {
    const std::vector<std::size_t> keys = pad_.keysOn(page_);
    const std::optional<std::size_t> nearest = nearestKey(places(keys), place);
    focusedKey_ = nearest ? keys[*nearest] : Pad::kNoKey;
}

}  // namespace vaultpad::secureworld
