// The trusted application's answer to a key event, as the library reads it.
#include <algorithm>
#include <memory>

#include "byte-core.h"
#include "communication/tee-client.h"
#include "fuzzer.h"
#include "platform-double.h"

using vaultpad::fuzz::byteCore;
using vaultpad::fuzz::require;

namespace {

template <std::size_t N>
bool isZero(const std::uint8_t (&bytes)[N]) {
    return std::all_of(bytes, bytes + N, [](std::uint8_t byte) { return byte == 0; });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vaultpad::test::platform().reset();
    byteCore() = {};
    byteCore().answer.assign(data, data + size);
    const auto record = std::make_unique<AppResult>();
    bool pressed = false;
    bool closed = false;
    vaultpad::communication::TeeClient client;
    const int result = client.send_key_event(2, VAULTPAD_TA_KEY_RETURN, record.get(), &pressed, &closed);
    require(record->enc_key_len <= sizeof(record->enc_key) && record->enc_data_len <= sizeof(record->enc_data));
    // What stands before and behind the two fields is not the answer's to write.
    require(record->status == 0 && isZero(record->rsa_modulus) && isZero(record->rsa_private_exponent));
    require(result == 0 || (record->enc_key_len == 0 && record->enc_data_len == 0 && record->ta_value == 0));
    return 0;
}
