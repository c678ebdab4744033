// Cost beside size: the exponent of the best power law through what growing layouts and texts cost.
#include <cmath>
#include <string>

#include "child.h"
#include "context/application-context-parser.h"
#include "context/element-container.h"
#include "graphic/object-renderer.h"
#include "television.h"
#include "toolkit-session.h"

namespace {

using namespace vaultpad;
using context::Element;
using ElementPointer = std::shared_ptr<Element>;
using ContainerPointer = std::shared_ptr<context::ElementContainer>;

// 1 is linear. What is fixed in a cost lowers the exponent; a quarter above is what a measurement may be off.
constexpr double kExponentAtMost = 1.25;

using Attributes = std::initializer_list<std::pair<const char*, std::string>>;

ElementPointer element(const char* name, const Attributes& attributes) {
    auto made = std::make_shared<Element>(name);
    for (const auto& [key, value] : attributes) {
        made->attribute(key, value);
    }
    return made;
}

std::shared_ptr<Element::List> listOf(const std::vector<ElementPointer>& elements) {
    return std::make_shared<Element::List>(elements.begin(), elements.end());
}

// Objects of one size, each with a text of its own.
ContainerPointer layoutOf(int objects, const std::string& text) {
    auto container = std::make_shared<context::ElementContainer>();
    container->imageBaseDirectory("/nowhere");
    container->images(listOf({element("image", {{"id", "plate"}, {"width", "1900"}, {"height", "60"}})}));
    container->fonts(
        listOf({element("font", {{"id", "font"}, {"family", "Noto Sans"}, {"size", "28"}, {"color", "FFFFFF"}})}));
    container->strings(listOf({element("string", {{"id", "text"}, {"value", text}})}));
    std::vector<ElementPointer> all;
    for (int i = 0; i < objects; ++i) {
        const ElementPointer object =
            element("object", {{"id", std::to_string(i)}, {"type", "image"}, {"ref", "plate"}, {"x", "0"}, {"y", "0"}});
        const ElementPointer label = element("object", {{"ref", "text"}, {"font", "font"}});
        label->parent(object);
        object->addChild(label);
        all.push_back(object);
    }
    container->objects(listOf(all));
    return container;
}

double renderMilliseconds(const std::function<ContainerPointer()>& layout) {
    graphic::ObjectRenderer renderer;
    double best = std::numeric_limits<double>::max();
    // The first two passes load the font and draw the whole canvas.
    for (int i = 0; i < (bench::runsOnce() ? 2 : 8); ++i) {
        const ContainerPointer container = layout();
        const double start = bench::threadMilliseconds();
        renderer.render(
            container, [](graphic::Canvas&) {}, [](const std::string& text) { throw std::runtime_error(text); });
        best = i > 0 ? std::min(best, bench::threadMilliseconds() - start) : best;
    }
    return best;
}

// The slope of the least-squares line through the logarithms.
double exponent(const std::vector<double>& sizes, const std::vector<double>& costs) {
    double x = 0;
    double y = 0;
    double xx = 0;
    double xy = 0;
    const auto count = static_cast<double>(sizes.size());
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const double size = std::log(sizes[i]);
        const double cost = std::log(costs[i]);
        x += size;
        y += cost;
        xx += size * size;
        xy += size * cost;
    }
    return (count * xy - x * y) / (count * xx - x * x);
}

void registerGrowth(const char* name, const std::vector<double>& sizes, ContainerPointer (*layout)(int)) {
    bench::registerOnce(name, [sizes, layout](benchmark::State& state) {
        const std::vector<double> costs = bench::bestInChildren(
            [&] {
                const ToolkitSession toolkit;
                std::vector<double> milliseconds;
                for (const double size : sizes) {
                    milliseconds.push_back(renderMilliseconds([&] { return layout(static_cast<int>(size)); }));
                }
                return milliseconds;
            },
            3);
        state.SetIterationTime(costs.back() / 1000);
        state.SetLabel("the time is the largest size's");
        state.counters["smallest_size"] = sizes.front();
        state.counters["largest_size"] = sizes.back();
        state.counters["exponent"] = exponent(sizes, costs);
        state.counters["exponent_at_most"] = kExponentAtMost;
    });
}

bool registerAll() {
    bench::useTelevision();
    registerGrowth("objects", {100, 200, 400}, [](int size) { return layoutOf(size, "Wq8"); });
    registerGrowth("characters of a text", {25, 50, 100},
                   [](int size) { return layoutOf(20, std::string(static_cast<std::size_t>(size), 'i')); });
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
