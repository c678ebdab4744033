#include "expected-fault.h"

#include <algorithm>
#include <map>

namespace vaultpad::test {

namespace {

constexpr const char* kNoSession = "[vaultpad]: No VaultPad session was started";

/* What is logged, and nothing else follows. */
const std::map<std::string, Strings>& onlyLogged() {
    static const std::map<std::string, Strings> table = {
        {"display_rotator_is_supported", {"display rotator is not supported"}},
        {"sensor_is_supported", {"SENSOR_AUTO_ROTATION is not supported"}},
        {"sensor_get_default_sensor", {"sensor_get_default_sensor failed (-1)"}},
        {"sensor_create_listener", {"sensor_create_listener failed (-1)"}},
        {"sensor_listener_start", {"sensor_listener_start failed (-1)"}},
        {"sensor_listener_read_data", {"sensor_listener_read_data failed (-1)"}},
        {"sound_manager_get_speaker_selection", {"[TUI NWD] Failed to get output_route"}},
        {"bt_audio_stop_streaming", {"[TUI NWD] Failed to stop streaming - BT : 0xffffffff"}},
        {"sound_manager_get_master_volume", {"Failed to get master volume"}},
        {"sound_manager_set_master_volume", {"Failed to set master volume"}},
        {"listen", {"[TUI NWD] Failed to open voice socket", "[TUI NWD] Time out : Voice create "}},
        {"bind", {"[TUI NWD] Failed to open voice socket", "[TUI NWD] Time out : Voice create "}},
        {"accept", {"[TUI NWD] Failed to open voice socket", "[TUI NWD] Time out : Voice create "}},
        {"recv", {"[TUI NWD] Time out : Voice create ", "[TUI NWD] Failed to open voice socket"}},
    };
    return table;
}

/* Functions whose failure has no consequence: nothing is returned, or nobody asks. */
const Strings& withoutConsequence() {
    static const Strings names = {"vconf_get_str",
                                  "ua_UI_orientation_get",
                                  "display_rotator_get_status",
                                  "sensor_listener_stop",
                                  "sensor_destroy_listener",
                                  "signal",
                                  "kill",
                                  "cynara_finish",
                                  "KeyRouter_Initialize", /* tried again */
                                  "KeyRouter_Finalize",
                                  "KeyRouter_Reset_KeyList",
                                  "KeyRouter_Remove_Key",
                                  "KeyRouter_UnSet_KeyList",
                                  "tzfw_core_close_session",
                                  "tzfw_core_finalize_context",
                                  "tzfw_core_release_shared_memory",
                                  "tzfw_tui_get_gp_info_size",
                                  "tzfw_tui_release_context",
                                  "destroy_CryptoCoreContainer"};
    return names;
}

bool isToolkit(const std::string& function) {
    return function.compare(0, 4, "elm_") == 0 || function.compare(0, 5, "evas_") == 0 ||
           function.compare(0, 6, "ecore_") == 0;
}

std::size_t nthOf(const FailingCall& call) {
    const std::string start = call.function() + "(";
    return static_cast<std::size_t>(
        std::count_if(call.journal.begin(), call.journal.begin() + static_cast<std::ptrdiff_t>(call.index) + 1,
                      [&start](const std::string& entry) { return entry.compare(0, start.size(), start) == 0; }));
}

std::optional<Expectation> gateExpectation(const FailingCall& call) {
    if (!call.is("cynara_initialize") && !call.is("cynara_check")) {
        return std::nullopt;
    }
    Expectation expected;
    if (call.is("cynara_initialize")) {
        expected.errors = {"cynara_initialize() Fail(-1)"};
    }
    expected.result = -1;
    if (nthOf(call) == 1) {
        expected.after = After::WithoutSession;
        if (call.kind.plainFamily) {
            expected.result = 0;
        } else {
            expected.errors.emplace_back(kNoSession);
        }
    } else if (call.kind.plainFamily && call.step() == "create") {
        expected.after = After::WithoutChannel;
    }
    return expected;
}

std::optional<Expectation> sessionExpectation(const FailingCall& call) {
    static const std::map<std::string, std::string> table = {
        {"tzfw_core_initialize_context", "tzfw_core_initialize_context() fail"},
        {"tzfw_core_set_uuid", "Failed call tzfw_core_set_uuid"},
        {"tzfw_core_open_session", "Failed tzfw_core_open_session()"}};
    const auto found = table.find(call.function());
    if (found == table.end()) {
        return std::nullopt;
    }
    Expectation expected;
    expected.errors = {found->second, "[vaultpad]: To initialize tee client is failed, ret: -1"};
    expected.result = -1;
    expected.after = call.kind.plainFamily ? After::WithoutChannel : After::WithoutSession;
    return expected;
}

/*
 * A start-up without its keys is abandoned before the pad's type is stored. The show then starts up once more, with the
 * keys but without a type, and ends where no layout can be chosen.
 */
std::optional<Expectation> keyRouterExpectation(const FailingCall& call) {
    Expectation expected;
    if (call.is("KeyRouter_Add_All_Key")) {
        expected.errors = {"Failed to add all key.", "Failed to initialize keyrouter."};
    } else if (call.is("KeyRouter_Set_KeyList")) {
        expected.errors = {"cant grab key", "Failed to grab all keys."};
    } else {
        return std::nullopt;
    }
    for (const char* error :
         {"vault_pad_init failed; wrong ime type", "wrong ime type and wrong enlarge mode (type : 0, enlarge : 0)",
          " wrong ime type", "[vaultpad]: "}) {
        expected.errors.emplace_back(error);
    }
    expected.furtherErrors = true;
    expected.abandoned = true;
    expected.result = -1;
    expected.unreleased = 1;
    return expected;
}

/* The file of a path that is missing cannot be parsed. The catalogues' folder is nobody's loss. */
std::optional<Expectation> pathExpectation(const FailingCall& call) {
    if (!call.is("tzplatform_mkpath")) {
        return std::nullopt;
    }
    Expectation expected;
    if (call.text().find("/xml/") != std::string::npos) {
        expected.errors = {"[vaultpad]: "};
        expected.furtherErrors = true;
        expected.abandoned = true;
        expected.result = -1;
        expected.after = call.kind.plainFamily ? After::AsEver : After::WithoutSession;
    }
    return expected;
}

std::optional<Expectation> decryptionExpectation(const FailingCall& call) {
    if (call.step() != "decrypt" || call.is("destroy_CryptoCoreContainer")) {
        return std::nullopt;
    }
    static const std::map<std::string, std::string> table = {
        {"create_CryptoCoreContainer(1054)", "DECRYPT RSA SESSION KEY ERROR rt1 = -1, rt2 = -1, rt3 = 0"},
        {"CryptoCore set_key_pair", "DECRYPT RSA SESSION KEY ERROR rt1 = -1, rt2 = -1, rt3 = 0"},
        {"CryptoCore decrypt", "DECRYPT RSA SESSION KEY ERROR rt1 = 0, rt2 = -1, rt3 = 0"},
        {"create_CryptoCoreContainer(1048)", "DECRYPT AES DATA ERROR rt1 = -1, rt2 = -1, rt3 = -1"},
        {"CryptoCore init", "DECRYPT AES DATA ERROR rt1 = -1"},
        {"CryptoCore update", "DECRYPT AES DATA ERROR rt1 = 0, rt2 = -1"},
        {"CryptoCore final", "DECRYPT AES DATA ERROR rt1 = 0, rt2 = 0, rt3 = -1"}};
    Expectation expected;
    for (const auto& [start, error] : table) {
        if (call.text().compare(0, start.size(), start) == 0) {
            expected.errors = {error};
        }
    }
    expected.furtherErrors = true;
    expected.unreadable = true;
    return expected;
}

std::optional<Expectation> otherExpectation(const FailingCall& call) {
    const std::string function = call.function();
    Expectation expected;
    if (isToolkit(function) || std::count(withoutConsequence().begin(), withoutConsequence().end(), function) != 0) {
        return expected;
    }
    if (const auto found = onlyLogged().find(function); found != onlyLogged().end()) {
        expected.errors = found->second;
        return expected;
    }
    if (function == "vconf_get_int") {
        if (call.text().find("bluetooth") != std::string::npos) {
            expected.errors = {"[TUI NWD] Failed to get VCONF_BT_STATUS"};
        }
        return expected;
    }
    if (function == "fork") {
        // Without a background helper the start-up goes on; without a voice maker the clips do not come.
        if (nthOf(call) == 2) {
            expected.errors = onlyLogged().at("recv");
        }
        return expected;
    }
    return std::nullopt;
}

}  // namespace

Expectation expectationOf(const FailingCall& call) {
    for (const auto& part : {gateExpectation, sessionExpectation, keyRouterExpectation, pathExpectation,
                             decryptionExpectation, channelExpectationOf, otherExpectation}) {
        if (const auto expected = part(call)) {
            return *expected;
        }
    }
    ADD_FAILURE() << "nothing says what the failure of " << call.text() << " makes of a session";
    return {};
}

}  // namespace vaultpad::test
