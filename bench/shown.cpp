// From a client's call, and from its program's start, to the shown pad; stage by stage.
#include <Ecore.h>
#include <Ecore_Evas.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <vaultpad/vaultpad.h>

#include <cstdio>
#include <numeric>
#include <optional>
#include <string>

#include "child.h"
#include "client.h"
#include "stages.h"
#include "television.h"

namespace {

using namespace vaultpad::bench;

// What is gated is the least of many: on a machine that others share, a disturbance lasts for seconds.
constexpr int kRunsOfAGate = 25;

constexpr int kPinpad = 1;
constexpr int kKeyboard = 2;

// The least that an application has done before it asks for a pad.
void startToolkit() {
    ecore_app_no_system_modules();
    if (ecore_evas_init() == 0) {
        throw std::runtime_error("the toolkit does not start");
    }
}

// What it has done as a rule: there is a window, with words in it.
void drawApplication() {
    constexpr int kWidth = 1920;
    constexpr int kHeight = 1080;
    constexpr int kTextSize = 30;
    startToolkit();
    Ecore_Evas* const window = ecore_evas_buffer_new(kWidth, kHeight);
    Evas_Object* const words = evas_object_text_add(ecore_evas_get(window));
    evas_object_text_font_set(words, "Sans", kTextSize);
    evas_object_text_text_set(words, "Choose a film");
    evas_object_show(words);
    ecore_evas_show(window);
    ecore_evas_manual_render(window);
}

// {milliseconds of the call, peak kilobytes}
std::vector<double> create(int type, void (*startApplication)()) {
    startApplication();
    const Clock::time_point start = Clock::now();
    openPad(type);
    const double milliseconds = millisecondsSince(start);
    const auto peak = static_cast<double>(peakKilobytes());
    CsapiVPADclose();
    return {milliseconds, peak};
}

std::vector<double> createInStages(int type) {
    drawApplication();
    const Trace trace;
    const std::int64_t start = monotonicMicroseconds();
    openPad(type);
    const std::vector<double> stages = trace.stages(start);
    CsapiVPADclose();
    return stages;
}

// The stages of a whole program: the demo, with a key that it has.
std::vector<double> runProgram(const char* type) {
    const Trace trace;
    unsetenv("VAULTPAD_TELEVISION");
    const std::vector<std::string> words = {
        VAULTPAD_BENCH_DEMO, "--type", type, "--display", "none", "--keys", "Return", "--rsa-key", VAULTPAD_BENCH_KEY};
    std::vector<char*> arguments;
    for (const std::string& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t silence;
    posix_spawn_file_actions_init(&silence);
    posix_spawn_file_actions_addopen(&silence, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t program = 0;
    const std::int64_t start = monotonicMicroseconds();
    const int error = posix_spawn(&program, arguments[0], &silence, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&silence);
    int status = 0;
    if (error != 0 || waitpid(program, &status, 0) != program) {
        throw std::runtime_error(words[0] + " does not run");
    }
    return trace.stages(start);
}

// The milliseconds that wvkbd takes from its start to its first picture; nothing where it is not installed.
std::optional<double> runWvkbd() {
    constexpr int kNotInstalled = 3;
    std::FILE* const output = popen(VAULTPAD_BENCH_WVKBD, "r");
    double milliseconds = 0;
    const bool measured = output != nullptr && std::fscanf(output, "%lf", &milliseconds) == 1;
    const int status = output == nullptr ? -1 : pclose(output);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kNotInstalled) {
        return std::nullopt;
    }
    if (!measured || status != 0) {
        throw std::runtime_error("wvkbd could not be measured");
    }
    return milliseconds;
}

double total(const std::vector<double>& stages) {
    return std::accumulate(stages.begin(), stages.end(), 0.0);
}

// Machines differ and waver, so waits are gated beside a yardstick in the same run: wvkbd, from its start to its first
// picture, which took 24 ms where the goals in milliseconds were set.
constexpr double kWvkbdWithGoals = 24;

std::optional<double> wvkbd() {
    static const std::optional<double> milliseconds = runWvkbd();
    return milliseconds;
}

// What a viewer waits for, in milliseconds, and the goal; 0: none.
void reportWait(benchmark::State& state, double milliseconds, double goal) {
    state.SetIterationTime(milliseconds / 1000);
    state.counters["wait_ms"] = milliseconds;
    if (wvkbd()) {
        state.counters["of_wvkbd"] = milliseconds / *wvkbd();
    }
    if (goal > 0 && wvkbd()) {
        state.counters["of_wvkbd_at_most"] = goal / kWvkbdWithGoals;
    } else if (goal > 0) {
        state.counters["wait_ms_at_most"] = goal;
    }
}

void reportWvkbd(benchmark::State& state) {
    state.SetIterationTime(wvkbd().value_or(0) / 1000);
    state.SetLabel(wvkbd() ? "wvkbd under headless sway, until its first picture" : "wvkbd is not installed");
}

double reportStages(benchmark::State& state, const std::vector<double>& stages) {
    for (std::size_t i = 0; i < stages.size(); ++i) {
        state.counters[stageNames()[i]] = stages[i];
    }
    return total(stages);
}

struct Goals {
    double create;  /* milliseconds; 0: none */
    double program; /* the same */
};

void registerCreate(const std::string& name, int type, void (*startApplication)(), double goal, const char* label) {
    registerOnce(name.c_str(), [=](benchmark::State& state) {
        const std::vector<double> best = bestInChildren([=] { return create(type, startApplication); }, kRunsOfAGate);
        reportWait(state, best[0], goal);
        state.SetLabel(label);
        state.counters["peak_MB"] = best[1] / 1024;
    });
}

void registerPad(int type, const char* name, const Goals& goals) {
    const std::string pad = std::string("/") + name;
    registerCreate("first words" + pad, type, startToolkit, 0, "toolkit up, but no word drawn yet, until created");
    registerCreate("application" + pad, type, drawApplication, goals.create, "application has drawn, until created");
    registerOnce(("stages/application" + pad).c_str(), [type](benchmark::State& state) {
        const double shown = reportStages(state, bestInChildren([type] { return createInStages(type); }));
        state.SetIterationTime(shown / 1000);
        state.SetLabel("application has drawn, until shown; milliseconds");
    });
    registerOnce(("stages/program" + pad).c_str(), [name, goals](benchmark::State& state) {
        const double shown = reportStages(state, bestInChildren([name] { return runProgram(name); }, kRunsOfAGate));
        reportWait(state, shown, goals.program);
        state.SetLabel("the demo from its start, until shown; milliseconds");
    });
}

bool registerAll() {
    useTelevision();
    registerPad(kPinpad, "pinpad", {15, 45});
    registerPad(kKeyboard, "keyboard", {30, 0});
    registerOnce("program/wvkbd", reportWvkbd);
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

}  // namespace
