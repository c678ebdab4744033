// The exported functions: thin guards around the controller.
#include <vaultpad/vaultpad.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "application.h"
#include "exception.h"
#include "log.h"
#include "privilege-gate.h"

using vaultpad::Application;
using vaultpad::check_vpad_api_privilege;
using vaultpad::exception::Exception;

VaultPadApplication* app = nullptr;
AppResult app_data = {};

namespace {

// The event type of the family that takes key names.
constexpr int kKeyNameEvent = 2;
// A status that the client sets to get an empty record.
constexpr std::int32_t kStatusEmpty = 1;

}  // namespace

// A macro for the sake of the log line, which names the function that was called without a session.
#define VPAD_LOG_NO_SESSION() VPAD_LOG_ERROR("[vaultpad]: No VaultPad session was started")
#define VPAD_RETURN_WITHOUT_SESSION(result) \
    do {                                    \
        if (app == nullptr) {               \
            VPAD_LOG_NO_SESSION();          \
            return result;                  \
        }                                   \
    } while (false)

int vault_pad_session(void) {
    if (check_vpad_api_privilege() != 1) {
        return 0;
    }
    VPAD_LOG_INFO("enter check_vpad_api_privilege success");
    try {
        app = Application::instance();
    } catch (const std::bad_alloc&) {
        VPAD_LOG_ERROR("memory allocation fail;");
        return 0;
    }
    return 1;
}

int vault_pad_create(int ime_type, int extra) {
    if (check_vpad_api_privilege() != 1) {
        return -1;
    }
    VPAD_RETURN_WITHOUT_SESSION(-1);
    try {
        app->vault_pad_init(ime_type, extra, true);
        app->vault_pad_show();
    } catch (const Exception& error) {
        VPAD_LOG_ERROR("[vaultpad]: %s", error.what());
        return -1;
    }
    return 0;
}

int vault_pad_params_set(unsigned int key_word1, unsigned int key_word2, void* key_blob, unsigned int key_part1_len,
                         unsigned int key_part2_len, void* aux_blob, unsigned int aux_len) {
    if (check_vpad_api_privilege() != 1) {
        return -1;
    }
    VPAD_RETURN_WITHOUT_SESSION(-1);
    return app->vault_pad_params_set(key_word1, key_word2, key_blob, key_part1_len, key_part2_len, aux_blob, aux_len);
}

int vault_pad_close(void) {
    if (check_vpad_api_privilege() != 1) {
        return -1;
    }
    VPAD_RETURN_WITHOUT_SESSION(-1);
    Application::destroy();
    app = nullptr;
    return 0;
}

int is_vault_pad_close(void) {
    VPAD_RETURN_WITHOUT_SESSION(0);
    return app->is_vault_pad_close() ? 1 : 0;
}

int vault_pad_button_press(void) {
    VPAD_RETURN_WITHOUT_SESSION(0);
    return app->vault_pad_button_press() ? 1 : 0;
}

int vault_pad_get_data(void* out) {
    // A status of 1 hands out an empty record: intended.
    if (app_data.status == kStatusEmpty) {
        app_data = {};
        app_data.status = kStatusEmpty;
    }
    std::memcpy(out, &app_data, sizeof(app_data));
    return 0;
}

int vaullt_pad_event(int event_type, void* event_data) {
    VPAD_RETURN_WITHOUT_SESSION(-1);
    return app->vault_pad_event(event_type, event_data, &app_data);
}

int vault_pad_event(int event_type, void* event_data) {
    return vaullt_pad_event(event_type, event_data);
}

int vault_pad_check_enc_len(void) {
    VPAD_RETURN_WITHOUT_SESSION(-1);
    return app_data.enc_key_len != 0 && app_data.enc_data_len != 0 ? 1 : 0;
}

int CsapiVPADcreate(int ime_type, int extra, unsigned int key_word1, unsigned int key_word2, void* key_blob,
                    unsigned int key_part1_len, unsigned int key_part2_len, void* aux_blob, unsigned int aux_len) {
    if (vault_pad_session() != 1) {
        VPAD_LOG_NO_SESSION();
        return -1;
    }
    try {
        app->vault_pad_init(ime_type, extra, false);
        app->vault_pad_show();
        const int result =
            vault_pad_params_set(key_word1, key_word2, key_blob, key_part1_len, key_part2_len, aux_blob, aux_len);
        return result == 0 ? 0 : -1;
    } catch (const Exception& error) {
        VPAD_LOG_ERROR("[vaultpad]: %s", error.what());
        vault_pad_close();
        return -1;
    }
}

int CsapiVPADevent(const char* key_name, unsigned int* out_value, unsigned int* out_closed) {
    VPAD_RETURN_WITHOUT_SESSION(-1);
    if (app->vault_pad_event(kKeyNameEvent, &key_name, &app_data) != 0) {
        *out_value = 0;
        *out_closed = 1;
        return -1;
    }
    *out_closed = app->is_vault_pad_close() ? 1 : 0;
    *out_value = app_data.ta_value;
    return 0;
}

namespace {

// The lengths are bounded where they are written; a client that scribbled over the record is not followed out of it.
void* copyOut(const std::uint8_t* bytes, std::size_t capacity, std::uint32_t length, unsigned int* outLength) {
    if (length > capacity) {
        VPAD_LOG_ERROR("[vaultpad]: the result record holds a length of %u for %zu bytes", length, capacity);
        length = 0;
    }
    void* copy = std::malloc(length);
    if (copy != nullptr) {
        std::memcpy(copy, bytes, length);
    } else if (length != 0) {
        VPAD_LOG_ERROR("memory allocation fail;");
    }
    *outLength = copy != nullptr ? length : 0;
    return copy;
}

}  // namespace

int CsapiVPADgetdata(void** out_key, unsigned int* out_key_len, void** out_data, unsigned int* out_data_len,
                     unsigned int* out_value) {
    *out_key = copyOut(app_data.enc_key, sizeof(app_data.enc_key), app_data.enc_key_len, out_key_len);
    *out_data = copyOut(app_data.enc_data, sizeof(app_data.enc_data), app_data.enc_data_len, out_data_len);
    *out_value = app_data.ta_value;
    return 0;
}

int CsapiVPADclose(void) {
    return vault_pad_close();
}

int CsapiVPADfreemem(void* p) {
    std::free(p);
    return 0;
}
