#include "pad-walk.h"

#include <vaultpad/ta-protocol.h>

#include <deque>
#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include "pad/focus.h"
#include "pad/turn.h"

namespace sw = vaultpad::secureworld;

namespace {

constexpr sw::Size kPanel = {VAULTPAD_TA_SCREEN_WIDTH, VAULTPAD_TA_SCREEN_HEIGHT};
constexpr std::pair<const char*, sw::Direction> kArrows[] = {{"Up", sw::Direction::Up},
                                                             {"Down", sw::Direction::Down},
                                                             {"Left", sw::Direction::Left},
                                                             {"Right", sw::Direction::Right}};

std::string idOf(const std::string& imageName) {
    const std::size_t prefix = std::string(VAULTPAD_TA_IMAGE_NAME_PREFIX).size();
    const std::size_t suffix = std::string(VAULTPAD_TA_IMAGE_NAME_SUFFIX).size();
    return imageName.substr(prefix, imageName.size() - prefix - suffix);
}

std::vector<sw::PadImage> readImages(const std::filesystem::path& store, std::uint32_t orientation) {
    std::vector<sw::PadImage> images;
    std::ifstream index(store / "index.tsv");
    std::string line;
    while (std::getline(index, line)) {
        std::istringstream fields(line);
        std::string number;
        std::string name;
        sw::Rect place;
        fields >> number >> name >> place.x >> place.y >> place.width >> place.height;
        images.push_back({idOf(name), sw::turned(place, kPanel, sw::panelToViewer(orientation))});
    }
    return images;
}

std::vector<sw::Rect> placesOf(const sw::Pad& pad, const std::vector<std::size_t>& keys) {
    std::vector<sw::Rect> places;
    for (const std::size_t key : keys) {
        places.push_back(pad.keys()[key].place);
    }
    return places;
}

}  // namespace

PadWalk::PadWalk(const std::filesystem::path& store, bool digitsOnly, std::uint32_t orientation) {
    std::vector<std::string> remarks;
    pad_.emplace(readImages(store, orientation), sw::PadRules{digitsOnly, false}, &remarks);
    restart();
}

void PadWalk::restart() {
    state_.page = pad_->startPage();
    const std::vector<std::size_t> keys = pad_->keysOn(state_.page);
    state_.key = keys.at(sw::readingOrder(placesOf(*pad_, keys)).at(0));
}

PadWalk::State PadWalk::afterPress(const State& state) const {
    const sw::PadKey& key = pad_->keys()[state.key];
    if (key.action.kind != sw::KeyAction::Kind::ShowPage) {
        return state;
    }
    const std::vector<std::size_t> keys = pad_->keysOn(key.action.page);
    return {key.action.page, keys.at(sw::nearestKey(placesOf(*pad_, keys), key.place).value())};
}

std::vector<PadWalk::Step> PadWalk::stepsFrom(const State& state) const {
    std::vector<Step> steps;
    const std::vector<std::size_t> keys = pad_->keysOn(state.page);
    const std::vector<sw::Rect> places = placesOf(*pad_, keys);
    std::size_t focused = 0;
    while (keys[focused] != state.key) {
        ++focused;
    }
    for (const auto& [name, direction] : kArrows) {
        if (const std::optional<std::size_t> next = sw::nextKey(places, focused, direction)) {
            steps.push_back({name, {state.page, keys[*next]}});
        }
    }
    if (pad_->keys()[state.key].action.kind == sw::KeyAction::Kind::ShowPage) {
        steps.push_back({"Return", afterPress(state)});
    }
    return steps;
}

std::optional<std::string> PadWalk::press(std::size_t key) {
    std::map<std::pair<std::string, std::size_t>, std::string> ways = {{{state_.page, state_.key}, ""}};
    std::deque<State> waiting = {state_};
    while (!waiting.empty()) {
        const State state = waiting.front();
        waiting.pop_front();
        const std::string way = ways.at({state.page, state.key});
        if (state.key == key) {
            state_ = afterPress(state);
            return way + "Return";
        }
        for (const Step& step : stepsFrom(state)) {
            if (ways.emplace(std::pair(step.next.page, step.next.key), way + step.press + ",").second) {
                waiting.push_back(step.next);
            }
        }
    }
    return std::nullopt;
}
