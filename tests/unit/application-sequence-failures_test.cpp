// The same session when one step fails: what follows, what is logged, what is returned.
#include <algorithm>

#include "application-stages.h"

namespace vaultpad::test {

namespace {

constexpr const char* kNoSession = "[vaultpad]: No VaultPad session was started";
constexpr const char* kNotSent = "failed to send data to TA, ret: -1";
const Strings kRelease = {"tzfw_core_release_shared_memory(block)"};

Strings together(const std::vector<Strings>& parts) {
    Strings all;
    for (const Strings& part : parts) {
        append(all, part);
    }
    return all;
}

struct StepFailure : Named {
    std::string function;
    int nth = 1;
    Strings then;            /* calls right after the failing one */
    Stage next = Stage::End; /* the stage that follows them */
    Strings errors;
    int created = 0; /* what CsapiVPADcreate returns */
    int closed = 0;  /* what CsapiVPADclose returns */
};

/* What create does after a start-up that threw before the session was opened, and the client's close after it. */
Strings closedAtOnce() {
    return together({privilegeGate(), privilegeGate()});
}

std::vector<StepFailure> gateAndSessionFailures() {
    return {
        {"PrivilegeService",
         "cynara_initialize",
         1,
         privilegeGate(),
         Stage::End,
         {"cynara_initialize() Fail(-1)", kNoSession, kNoSession},
         -1,
         -1},
        {"Privilege",
         "cynara_check",
         1,
         together({{"cynara_finish()"}, privilegeGate()}),
         Stage::End,
         {kNoSession, kNoSession},
         -1,
         -1},
        {"Language",
         "vconf_get_str",
         1,
         {"tzplatform_mkpath(28, vaultpad/res/locale)", "ua_UI_orientation_get()"},
         Stage::OpenSession,
         {}},
        {"Context",
         "tzfw_core_initialize_context",
         1,
         closedAtOnce(),
         Stage::End,
         {"tzfw_core_initialize_context() fail", "[vaultpad]: To initialize tee client is failed, ret: -1", kNoSession},
         -1,
         -1},
        {"Uuid",
         "tzfw_core_set_uuid",
         1,
         together({{"tzfw_core_finalize_context()"}, closedAtOnce()}),
         Stage::End,
         {"Failed call tzfw_core_set_uuid", "[vaultpad]: To initialize tee client is failed, ret: -1", kNoSession},
         -1,
         -1},
        {"Session",
         "tzfw_core_open_session",
         1,
         together({{"tzfw_core_finalize_context()"}, closedAtOnce()}),
         Stage::End,
         {"Failed tzfw_core_open_session()", "[vaultpad]: To initialize tee client is failed, ret: -1", kNoSession},
         -1,
         -1},
        {"KeyPrivilegeService", "cynara_initialize", 2, {}, Stage::CloseGate, {"cynara_initialize() Fail(-1)"}, -1, 0},
        {"KeyPrivilege", "cynara_check", 2, {"cynara_finish()"}, Stage::CloseGate, {}, -1, 0},
        {"ClosePrivilege", "cynara_check", 3, {"cynara_finish()"}, Stage::End, {}, 0, -1},
        {"CloseSession",
         "tzfw_core_close_session",
         1,
         {"tzfw_core_finalize_context()", "tzfw_tui_release_context()"},
         Stage::End,
         {}},
    };
}

std::vector<StepFailure> settingsFailures() {
    return {
        {"FocusZoom",
         "vconf_get_int",
         1,
         {"vconf_get_int(db/menu/system/accessibility/highcontrast)"},
         Stage::Helper,
         {}},
        {"HighContrast", "vconf_get_int", 2, {}, Stage::Helper, {}},
        {"Rotator", "display_rotator_is_supported", 1, {}, Stage::ImeType, {"display rotator is not supported"}},
        {"SensorSupport", "sensor_is_supported", 1, {}, Stage::ImeType, {"SENSOR_AUTO_ROTATION is not supported"}},
        {"Sensor", "sensor_get_default_sensor", 1, {}, Stage::ImeType, {"sensor_get_default_sensor failed (-1)"}},
        {"Listener", "sensor_create_listener", 1, {}, Stage::ImeType, {"sensor_create_listener failed (-1)"}},
        {"ListenerStart",
         "sensor_listener_start",
         1,
         {"sensor_destroy_listener()"},
         Stage::ImeType,
         {"sensor_listener_start failed (-1)"}},
        {"SensorReading",
         "sensor_listener_read_data",
         1,
         {"sensor_listener_stop()", "sensor_destroy_listener()"},
         Stage::ImeType,
         {"sensor_listener_read_data failed (-1)"}},
        {"ImeTypeBlock",
         "tzfw_core_create_shared_memory",
         1,
         {},
         Stage::Layout,
         {"tzfw_core_create_shared_memory() fail"}},
        {"ImeTypeFirstWord", "tzfw_core_write_uint", 1, {}, Stage::Layout, {"t_type : 1"}},
        {"ImeTypeLastWord", "tzfw_core_write_uint", 8, {}, Stage::Layout, {"base_y : 590"}},
        {"ImeTypeInvoke", "tzfw_core_invoke_event", 1, {}, Stage::Layout, {"tzfw_core_invoke_event() fail"}},
    };
}

std::vector<StepFailure> uploadFailures() {
    return {
        {"TrustedUi",
         "tzfw_tui_create_context",
         1,
         {},
         Stage::KillHelper,
         {"tzfw_tui_create_context fail;;", "initRenderContext() fail", kNotSent}},
        {"DescriptionMissing",
         "tzfw_tui_get_gp_info",
         1,
         {},
         Stage::KillHelper,
         {"tzfw_tui_get_gp_info;", "initRenderContext() fail", kNotSent}},
        {"DescriptionBlock",
         "tzfw_core_create_shared_memory",
         2,
         {},
         Stage::KillHelper,
         {"tzfw_core_create_shared_memory fail;;", "initRenderContext() fail", kNotSent}},
        {"DescriptionBlob",
         "tzfw_core_write_blob",
         1,
         kRelease,
         Stage::KillHelper,
         {"tzfw_core_write_blob fail;;", "initRenderContext() fail", kNotSent}},
        {"DescriptionInvoke",
         "tzfw_core_invoke_event",
         2,
         kRelease,
         Stage::KillHelper,
         {"tzfw_core_invoke_event fail;;", "initRenderContext() fail", kNotSent}},
        {"ImagesBlock",
         "tzfw_core_create_shared_memory",
         3,
         {},
         Stage::KillHelper,
         {"tzfw_core_create_shared_memory() fail", kNotSent}},
        {"ImageName",
         "tzfw_core_write_string",
         1,
         {},
         Stage::KillHelper,
         {"/root/key.1.normal.ppm / tzfw_core_write_string() fail", kNotSent}},
        {"ImagePixels",
         "tzfw_core_write_blob",
         2,
         {},
         Stage::KillHelper,
         {"/root/key.1.normal.ppm / tzfw_core_write_blob() fail", kNotSent}},
        {"ImagesInvoke",
         "tzfw_core_invoke_event",
         3,
         {},
         Stage::KillHelper,
         {"tzfw_core_invoke_event() fail", kNotSent}},
        {"ImagesDoneBlock",
         "tzfw_core_create_shared_memory",
         4,
         {},
         Stage::KillHelper,
         {"tzfw_core_create_shared_memory() fail", "Failed to send_image_done()", kNotSent}},
        {"ImagesDoneInvoke",
         "tzfw_core_invoke_event",
         4,
         kRelease,
         Stage::KillHelper,
         {"tzfw_core_invoke_event() fail", "Failed to send_image_done()", kNotSent}},
        {"ShowBlock",
         "tzfw_core_create_shared_memory",
         5,
         {},
         Stage::KeyGate,
         {"tzfw_core_create_shared_memory() fail", "failed to show vaultpad, ret: -1"}},
        {"ShowInvoke",
         "tzfw_core_invoke_event",
         5,
         kRelease,
         Stage::KeyGate,
         {"tzfw_core_invoke_event() fail", "failed to show vaultpad, ret: -1"}},
        {"PublicKeyBlock",
         "tzfw_core_create_shared_memory",
         6,
         {},
         Stage::CloseGate,
         {"tzfw_core_create_shared_memory() fail"},
         -1,
         0},
        {"PublicKeyBlob", "tzfw_core_write_blob", 3, {}, Stage::CloseGate, {"tzfw_core_write_blob() fail"}, -1, 0},
        {"PublicKeyInvoke",
         "tzfw_core_invoke_event",
         6,
         {},
         Stage::CloseGate,
         {"tzfw_core_invoke_event() fail"},
         -1,
         0},
    };
}

std::vector<StepFailure> allFailures() {
    std::vector<StepFailure> all = gateAndSessionFailures();
    for (const auto& more : {settingsFailures(), uploadFailures()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

/* The normal sequence up to the failing call, then what the failure makes of the rest. */
Strings sequenceWith(const StepFailure& failure) {
    Strings expected;
    bool failed = false;
    int seen = 0;
    for (const auto& [stage, calls] : startUpSequence()) {
        if (failed && stage < failure.next) {
            continue;
        }
        for (const std::string& call : calls) {
            expected.push_back(call);
            if (!failed && call.compare(0, failure.function.size() + 1, failure.function + "(") == 0 &&
                ++seen == failure.nth) {
                failed = true;
                append(expected, failure.then);
                break;
            }
        }
    }
    // A trusted UI that could not be made is not released.
    if (failure.function == "tzfw_tui_create_context") {
        expected.pop_back();
    }
    return expected;
}

}  // namespace

class FailingStep : public SequenceTest, public testing::WithParamInterface<StepFailure> {};

TEST_P(FailingStep, ChangesTheSequenceTheLogAndTheResultsLikeThis) {
    const StepFailure& failure = GetParam();
    platform().fail(failure.function, failure.nth);
    EXPECT_EQ(create(), failure.created);
    EXPECT_EQ(CsapiVPADclose(), failure.closed);
    EXPECT_EQ(calls(), sequenceWith(failure));
    EXPECT_EQ(platform().errors(), failure.errors);
}

INSTANTIATE_TEST_SUITE_P(, FailingStep, testing::ValuesIn(allFailures()), CaseName());

TEST_F(SequenceTest, FailedForkStartsUpWithoutAHelperToKill) {
    platform().fail("fork");
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(CsapiVPADclose(), 0);
    EXPECT_EQ(platform().count("kill"), 0);
    EXPECT_EQ(platform().errors(), Strings{});
}

TEST_F(SequenceTest, UnreadableLayoutEndsTheSessionAndKillsTheHelper) {
    folder_.write("vaultpad/res/xml/normal/pinpad.xml", "<layout>");
    EXPECT_EQ(create(), -1);
    EXPECT_EQ(app, nullptr);
    Strings expected;
    for (const auto& [stage, calls] : startUpSequence()) {
        if (stage <= Stage::Layout || stage == Stage::KillHelper || stage == Stage::CloseGate) {
            append(expected, calls);
        }
    }
    // The gate of the close comes before the helper is killed; a trusted UI was never made.
    std::rotate(expected.end() - 4, expected.end() - 3, expected.end());
    append(expected, {"tzfw_core_close_session()", "tzfw_core_finalize_context()"});
    EXPECT_EQ(calls(), expected);
    const Strings errors = platform().errors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_THAT(errors.front(), testing::StartsWith("[vaultpad]: "));
    EXPECT_GT(errors.front().size(), std::string("[vaultpad]: ").size()) << "without the XML library's message";
}

TEST_F(SequenceTest, LayoutThatCannotBeDrawnIsLoggedAndTheStartUpGoesOn) {
    writeLayout("normal/pinpad.xml", R"(<layout><objects><object id="a" type="image" ref="none" x="1" y="1"/></objects>
        <images basedir="/"/></layout>)");
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(platform().errors(), (Strings{"onError", "Can't find master element's reference object."}));
    EXPECT_THAT(platform().events(), testing::ElementsAre(5, 8, 7, 1, 3));
}

}  // namespace vaultpad::test
