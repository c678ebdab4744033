// The seam towards the trusted-execution client: create, write, invoke, read, each with its line in the log.
#include <vaultpad-platform/trusted-core.h>

#include <cstring>

#include "communication/tee-client.h"
#include "log.h"
#include "result-record.h"

namespace vaultpad::communication {

void* TeeClient::createBlock(std::uint32_t size) {
    void* block = tzfw_core_create_shared_memory(context_, VAULTPAD_TRUSTED_MEMORY_TYPE, size,
                                                 VAULTPAD_TRUSTED_MEMORY_IN, VAULTPAD_TRUSTED_MEMORY_OUT);
    if (block == nullptr) {
        CA_LOG_ERROR("tzfw_core_create_shared_memory() fail");
    }
    return block;
}

bool TeeClient::writeUint(void* block, std::uint32_t value) {
    if (tzfw_core_write_uint(context_, block, value) != 0) {
        CA_LOG_ERROR("tzfw_core_write_uint() fail");
        return false;
    }
    return true;
}

bool TeeClient::writeSetting(void* block, const char* name, std::int32_t value) {
    if (tzfw_core_write_uint(context_, block, static_cast<std::uint32_t>(value)) != 0) {
        CA_LOG_ERROR("%s : %d", name, value);
        return false;
    }
    return true;
}

bool TeeClient::writeString(void* block, const char* text) {
    if (tzfw_core_write_string(context_, block, text) != 0) {
        CA_LOG_ERROR("tzfw_core_write_string() fail");
        return false;
    }
    return true;
}

bool TeeClient::writeBlob(void* block, const void* data, std::uint32_t size) {
    // The platform is never handed a length without the bytes.
    if ((data == nullptr && size != 0) || tzfw_core_write_blob(context_, block, data, size) != 0) {
        CA_LOG_ERROR("tzfw_core_write_blob() fail");
        return false;
    }
    return true;
}

bool TeeClient::invoke(std::uint32_t event) {
    if (tzfw_core_invoke_event(context_, event) != 0) {
        CA_LOG_ERROR("tzfw_core_invoke_event() fail");
        return false;
    }
    return true;
}

bool TeeClient::readUint(void* block, std::uint32_t* value) {
    if (tzfw_core_read_uint(context_, block, value) != 0) {
        CA_LOG_ERROR("tzfw_core_read_uint() fail");
        return false;
    }
    return true;
}

bool TeeClient::readBlob(void* block, std::uint32_t size, void** data) {
    if (tzfw_core_read_blob(context_, block, data, size) != 0 || *data == nullptr) {
        CA_LOG_ERROR("tzfw_core_read_blob() fail");
        return false;
    }
    return true;
}

bool TeeClient::readAnswer(void* block, AppResult* result, bool* button_pressed, bool* closed) {
    std::uint32_t pressedWord = 0;
    std::uint32_t closedWord = 0;
    if (!readUint(block, &pressedWord) || !readUint(block, &closedWord)) {
        return false;
    }
    if (button_pressed != nullptr && closed != nullptr) {
        *button_pressed = pressedWord != 0;
        *closed = closedWord != 0;
    }
    std::uint32_t keyLength = 0;
    std::uint32_t dataLength = 0;
    std::uint32_t value = 0;
    if (!readUint(block, &keyLength) || !readUint(block, &dataLength) || !readUint(block, &value)) {
        return false;
    }
    // The second label is empty on purpose.
    CA_LOG_INFO("pub int data from swd\nencrypted_key_len = %u ,  = %u", keyLength, dataLength);
    if (keyLength == 0 || dataLength == 0) {
        clearAnswerWords(*result);
        return true;
    }
    // The record's capacities bound the copies, whatever the TA says.
    if (keyLength > sizeof(result->enc_key) || dataLength > sizeof(result->enc_data)) {
        CA_LOG_ERROR("answer exceeds the record : encrypted key %u bytes of %zu, encrypted data %u bytes of %zu",
                     keyLength, sizeof(result->enc_key), dataLength, sizeof(result->enc_data));
        clearAnswerWords(*result);
        return false;
    }
    void* key = nullptr;
    void* data = nullptr;
    if (!readBlob(block, keyLength, &key) || !readBlob(block, dataLength, &data)) {
        return false;
    }
    result->enc_key_len = keyLength;
    std::memcpy(result->enc_key, key, keyLength);
    result->enc_data_len = dataLength;
    std::memcpy(result->enc_data, data, dataLength);
    result->ta_value = value;
    return true;
}

}  // namespace vaultpad::communication
