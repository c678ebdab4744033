// Rendering of the layouts: cold, as a client has it once, and per key; beside an engine that redraws everything.
#include <Evas.h>
#include <Evas_Engine_Buffer.h>

#include <string>

#include "child.h"
#include "context/application-context-parser.h"
#include "graphic/object-renderer.h"
#include "television.h"
#include "toolkit-session.h"

namespace {

using namespace vaultpad;
using bench::Look;

constexpr int kKeyboard = 2;

// Without the hook, the engine redraws the whole canvas in every pass.
bool redrawEverything = false;

std::shared_ptr<context::ElementContainer> parsed(const Look& look) {
    context::ApplicationContextParser parser;
    parser.setMode(look.enlarged, look.highContrast, look.type, look.mirrored, look.portrait ? 1 : 0);
    return parser.parse();
}

struct Rendered {
    double milliseconds;
    int images;
};

Rendered render(graphic::ObjectRenderer& renderer, const std::shared_ptr<context::ElementContainer>& container) {
    int images = 0;
    std::string failure;
    const double start = bench::threadMilliseconds();
    renderer.render(
        container, [&images](graphic::Canvas&) { ++images; }, [&failure](const std::string& text) { failure = text; });
    const double milliseconds = bench::threadMilliseconds() - start;
    if (!failure.empty() || images == 0) {
        throw std::runtime_error("the layout was not rendered: " + failure);
    }
    return {milliseconds, images};
}

// {milliseconds, images} of the first layout that a process renders, with the toolkit initialised and no font loaded.
std::vector<double> renderCold(const Look& look, bool everything) {
    const ToolkitSession toolkit;
    const auto container = parsed(look);
    redrawEverything = everything;
    graphic::ObjectRenderer renderer;
    renderer.lazyInit();
    const Rendered rendered = render(renderer, container);
    return {rendered.milliseconds, static_cast<double>(rendered.images)};
}

// {milliseconds per image} of a layout whose fonts are loaded.
std::vector<double> renderWarm(const Look& look, bool everything) {
    const ToolkitSession toolkit;
    redrawEverything = everything;
    graphic::ObjectRenderer renderer;
    render(renderer, parsed(look));
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < (bench::runsOnce() ? 1 : 5); ++i) {
        const Rendered rendered = render(renderer, parsed(look));
        best = std::min(best, rendered.milliseconds / rendered.images);
    }
    return {best};
}

void reportRatio(benchmark::State& state, double changes, double everything, double atLeast) {
    state.SetIterationTime(changes / 1000);
    state.SetLabel("redraw of everything");
    state.counters["ratio"] = everything / changes;
    if (atLeast > 0) {
        state.counters["ratio_at_least"] = atLeast;
    }
}

void registerLayout(const Look& look) {
    bench::registerOnce(("cold/" + bench::nameOf(look)).c_str(), [look](benchmark::State& state) {
        const bool gated = bench::nameOf(look) == bench::nameOf({kKeyboard});
        const auto [changes, everything] = bench::bestInTurns(
            gated ? 15 : 5, [&] { return renderCold(look, false); }, [&] { return renderCold(look, true); });
        // The goal: 18 ms where an engine that redraws everything takes 70.
        constexpr double kKeyboardAtLeast = 70.0 / 18;
        reportRatio(state, changes[0], everything[0], gated ? kKeyboardAtLeast : 0);
        state.counters["images"] = changes[1];
    });
}

void registerImage(const char* name, const Look& look) {
    bench::registerOnce(name, [look](benchmark::State& state) {
        const auto [changes, everything] = bench::bestInTurns(
            3, [&] { return renderWarm(look, false); }, [&] { return renderWarm(look, true); });
        constexpr double kRatioAtLeast = 1.5;
        reportRatio(state, changes[0], everything[0], kRatioAtLeast);
    });
}

bool registerAll() {
    bench::useTelevision();
    registerImage("image/pinpad", {});
    registerImage("image/keyboard", {kKeyboard});
    for (const int type : {1, kKeyboard}) {
        for (unsigned bits = 0; bits < (bench::runsOnce() ? 1 : 16); ++bits) {
            registerLayout({type, (bits & 8) != 0, (bits & 4) != 0, (bits & 2) != 0, (bits & 1) != 0});
        }
    }
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace

// The linker puts this between the renderer and the toolkit (--wrap).
// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
// The toolkit's own libraries refer to the wrapper, too.
#pragma GCC visibility push(default)
extern "C" {

Eina_Bool __real_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info);
Eina_Bool __wrap_evas_engine_info_set(Evas* canvas, Evas_Engine_Info* info) {
    if (redrawEverything) {
        reinterpret_cast<Evas_Engine_Info_Buffer*>(info)->info.func.switch_buffer = nullptr;
    }
    return __real_evas_engine_info_set(canvas, info);
}
}
#pragma GCC visibility pop
// NOLINTEND(bugprone-reserved-identifier)
