/* The calls between CsapiVPADcreate and CsapiVPADclose, stage by stage. */
#ifndef VAULTPAD_TESTS_UNIT_APPLICATION_STAGES_H
#define VAULTPAD_TESTS_UNIT_APPLICATION_STAGES_H

#include <unistd.h>

#include <string>
#include <utility>
#include <vector>

#include "application-fixture.h"

namespace vaultpad::test {

enum class Stage {
    OpenGate,
    Construct,
    OpenSession,
    Settings,
    Helper,
    Orientation,
    ImeType,
    Layout,
    Description,
    Images,
    ImagesDone,
    KillHelper,
    Show,
    KeyGate,
    PublicKey,
    CloseGate,
    Close,
    End
};

inline Strings privilegeGate() {
    return {"cynara_initialize(null)",
            "cynara_check(\"pad-client\", \"\", \"" + std::to_string(getuid()) +
                "\", \"http://tizen.org/privilege/internal/default/platform\")",
            "cynara_finish()"};
}

/* A PIN pad of four digits, the only object of its layout, with a key of 3 bytes and 2 auxiliary bytes. */
inline std::vector<std::pair<Stage, Strings>> startUpSequence() {
    return {
        {Stage::OpenGate, privilegeGate()},
        {Stage::Construct,
         {"vconf_get_str(db/menu_widget/language)", "tzplatform_mkpath(28, vaultpad/res/locale)",
          "ua_UI_orientation_get()"}},
        {Stage::OpenSession,
         {"tzfw_core_initialize_context(out)", "tzfw_core_set_uuid(6f1d3c52-8a47-4be9-9c21-5e770bd438f6)",
          "tzfw_core_open_session()"}},
        {Stage::Settings,
         {"vconf_get_int(db/menu/system/accessibility/focuszoom)",
          "vconf_get_int(db/menu/system/accessibility/highcontrast)"}},
        {Stage::Helper, {"fork()", "signal(SIGUSR2)"}},
        {Stage::Orientation,
         {"display_rotator_is_supported()", "display_rotator_get_status()", "sensor_is_supported(2305)",
          "sensor_get_default_sensor(2305)", "sensor_create_listener()", "sensor_listener_start()",
          "sensor_listener_read_data()", "sensor_listener_stop()", "sensor_destroy_listener()"}},
        {Stage::ImeType,
         {"tzfw_core_create_shared_memory(0, 1024, 3, 3)", "tzfw_core_write_uint(block, 1)",
          "tzfw_core_write_uint(block, 4)", "tzfw_core_write_uint(block, 0)", "tzfw_core_write_uint(block, 0)",
          "tzfw_core_write_uint(block, 0)", "tzfw_core_write_uint(block, 0)", "tzfw_core_write_uint(block, 738)",
          "tzfw_core_write_uint(block, 590)", "tzfw_core_invoke_event(5)", "tzfw_core_release_shared_memory(block)"}},
        {Stage::Layout, {"tzplatform_mkpath(28, vaultpad/res/xml/normal/pinpad.xml)"}},
        {Stage::Description,
         {"tzfw_tui_create_context()", "tzfw_tui_get_gp_info()", "tzfw_core_create_shared_memory(0, 6144000, 3, 3)",
          "tzfw_tui_get_gp_info_size()", "tzfw_core_write_uint(block, 5)", "tzfw_core_write_blob(block, 5 bytes)",
          "tzfw_core_invoke_event(8)", "tzfw_core_release_shared_memory(block)"}},
        {Stage::Images,
         {"tzfw_core_create_shared_memory(0, 6144000, 3, 3)", "tzfw_core_write_uint(block, 1)",
          "tzfw_core_write_string(block, /root/key.1.normal.ppm)", "tzfw_core_write_uint(block, 4)",
          "tzfw_core_write_uint(block, 3)", "tzfw_core_write_uint(block, 5)", "tzfw_core_write_uint(block, 6)",
          "tzfw_core_write_uint(block, 36)", "tzfw_core_write_blob(block, 36 bytes)", "tzfw_core_invoke_event(0)",
          "tzfw_core_release_shared_memory(block)"}},
        {Stage::ImagesDone,
         {"tzfw_core_create_shared_memory(0, 102400, 3, 3)", "tzfw_core_invoke_event(7)",
          "tzfw_core_release_shared_memory(block)"}},
        {Stage::KillHelper, {"kill(4242, SIGKILL)"}},
        {Stage::Show,
         {"tzfw_core_create_shared_memory(0, 102400, 3, 3)", "tzfw_core_invoke_event(1)",
          "tzfw_core_release_shared_memory(block)"}},
        {Stage::KeyGate, privilegeGate()},
        {Stage::PublicKey,
         {"tzfw_core_create_shared_memory(0, 2048, 3, 3)", "tzfw_core_write_uint(block, 11)",
          "tzfw_core_write_uint(block, 12)", "tzfw_core_write_uint(block, 2)", "tzfw_core_write_uint(block, 1)",
          "tzfw_core_write_blob(block, 3 bytes)", "tzfw_core_write_uint(block, 2)",
          "tzfw_core_write_blob(block, 2 bytes)", "tzfw_core_invoke_event(3)",
          "tzfw_core_release_shared_memory(block)"}},
        {Stage::CloseGate, privilegeGate()},
        {Stage::Close, {"tzfw_core_close_session()", "tzfw_core_finalize_context()", "tzfw_tui_release_context()"}},
    };
}

inline void append(Strings& list, const Strings& more) {
    list.insert(list.end(), more.begin(), more.end());
}

class SequenceTest : public ApplicationTest {
protected:
    SequenceTest() { writeLayout("normal/pinpad.xml"); }

    static int create() {
        Bytes key = {1, 2, 3};
        Bytes aux = {4, 5};
        return CsapiVPADcreate(VAULTPAD_TYPE_PINPAD, 4, 11, 12, key.data(), 2, 1, aux.data(), 2);
    }

    /* The journal with every block called the same. */
    static Strings calls() {
        Strings journal = platform().journal();
        for (std::string& entry : journal) {
            const std::size_t start = entry.find("(block ");
            if (start != std::string::npos) {
                const std::size_t end = entry.find_first_of(",)", start);
                entry.replace(start, end - start, "(block");
            }
        }
        return journal;
    }
};

}  // namespace vaultpad::test

#endif
