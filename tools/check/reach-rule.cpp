#include <deque>
#include <set>
#include <utility>

#include "check/rules.h"
#include "pad/focus.h"
#include "pad/pad.h"

namespace vaultpad::tools {

namespace {

using secureworld::Direction;
using secureworld::Pad;
using secureworld::Rect;

// A page that is shown and the key that has the focus.
using Stop = std::pair<std::string, std::size_t>;

class Walk {
public:
    explicit Walk(const Pad& pad) : pad_(pad) {
        const std::vector<std::size_t> keys = pad.keysOn(pad.startPage());
        if (!keys.empty()) {
            visit(pad.startPage(), keys[secureworld::readingOrder(places(keys)).front()]);
        }
        while (!open_.empty()) {
            const Stop stop = open_.front();
            open_.pop_front();
            leave(stop);
        }
    }

    bool reaches(const std::string& page) const { return pages_.count(page) > 0; }
    bool reaches(const std::string& page, std::size_t key) const { return seen_.count({page, key}) > 0; }

private:
    void visit(const std::string& page, std::size_t key) {
        pages_.insert(page);
        if (seen_.emplace(page, key).second) {
            open_.emplace_back(page, key);
        }
    }

    // Every way that leads on: the arrows, and the page that the key shows.
    void leave(const Stop& stop) {
        const auto& [page, focused] = stop;
        const std::vector<std::size_t> keys = pad_.keysOn(page);
        std::size_t position = 0;
        while (keys[position] != focused) {
            ++position;
        }
        for (const Direction arrow : {Direction::Up, Direction::Down, Direction::Left, Direction::Right}) {
            if (const auto next = secureworld::nextKey(places(keys), position, arrow)) {
                visit(page, keys[*next]);
            }
        }
        const std::string target = pad_.keys()[focused].action.page;
        if (!target.empty() && pad_.hasPage(target)) {
            const std::vector<std::size_t> there = pad_.keysOn(target);
            if (const auto nearest = secureworld::nearestKey(places(there), pad_.keys()[focused].place)) {
                visit(target, there[*nearest]);
            }
        }
    }

    std::vector<Rect> places(const std::vector<std::size_t>& keys) const {
        std::vector<Rect> result;
        for (const std::size_t key : keys) {
            result.push_back(pad_.keys()[key].place);
        }
        return result;
    }

    const Pad& pad_;
    std::set<Stop> seen_;
    std::set<std::string> pages_;
    std::deque<Stop> open_;
};

std::set<std::string> pagesOf(const std::vector<CheckedObject>& objects) {
    std::set<std::string> pages;
    for (const CheckedObject& object : objects) {
        if (object.id.kind == secureworld::ImageKind::Key) {
            pages.insert(object.id.page);
        }
    }
    if (pages.size() > 1) {
        pages.erase("");
    }
    return pages;
}

}  // namespace

void checkReach(const std::vector<CheckedObject>& objects, Findings* findings) {
    std::vector<secureworld::PadImage> images;
    for (const CheckedObject& object : objects) {
        images.push_back({object.image->id, object.image->place});
    }
    std::vector<std::string> remarks;
    const Pad pad(images, {}, &remarks);
    const Walk walk(pad);
    for (const std::string& page : pagesOf(objects)) {
        for (const std::size_t key : pad.keysOn(page)) {
            const CheckedObject& object = objects[pad.keys()[key].normalImage];
            if (!walk.reaches(page) && object.id.page == page) {
                findings->add(lineOf(*object.source), "reach", "no key leads to the page '" + page + "'",
                              "add a key with .to-" + page + " to a page that is shown");
                break;
            }
            if (walk.reaches(page) && !walk.reaches(page, key)) {
                findings->add(lineOf(*object.source), "reach", "no arrow leads to '" + object.image->id + "'",
                              "place it in a row or column with other keys");
            }
        }
    }
}

}  // namespace vaultpad::tools
