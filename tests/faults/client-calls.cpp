#include "client-calls.h"

#include <cstddef>
#include <cstring>

#include "allocation-seam.h"
#include "encrypted-answer.h"

namespace vaultpad::test {

namespace {

constexpr unsigned int kPrefix = 2;
constexpr unsigned int kUntouched = 9;
constexpr int kKeyPress = 2;

const KeyPair& keyPair() {
    return KeyPair::ofBits(1024);
}

int typeOf(const SessionKind& kind) {
    return kind.keyboard ? VAULTPAD_TYPE_KEYBOARD : VAULTPAD_TYPE_PINPAD;
}

/* What the trusted application answers to the last key: the text, and that the pad is done. */
std::deque<Value> finalAnswer() {
    Bytes sessionKey(32);
    for (std::size_t i = 0; i < sessionKey.size(); ++i) {
        sessionKey[i] = static_cast<std::uint8_t>(i * 5 + 1);
    }
    const std::string text = kTypedText;
    const Bytes key = keyPair().encrypt(sessionKey);
    const Bytes data = encryptedUnder(sessionKey, plaintextOf({text.begin(), text.end()}, kPrefix));
    return {1u, 1u, static_cast<std::uint32_t>(key.size()), static_cast<std::uint32_t>(data.size()), 7u, key, data};
}

std::string decrypted(const std::uint8_t* key, unsigned int keyLength, const std::uint8_t* data,
                      unsigned int dataLength) {
    char* text = nullptr;
    unsigned int length = 0;
    const Bytes& modulus = keyPair().modulus;
    const Bytes& exponent = keyPair().privateExponent;
    const int decryption = watched([&] {
        return CsapiVPADdecryptWithRSAKeyPair(modulus.data(), static_cast<unsigned int>(modulus.size()),
                                              exponent.data(), static_cast<unsigned int>(exponent.size()), kPrefix, key,
                                              keyLength, data, dataLength, &text, &length);
    });
    EXPECT_EQ(decryption, 0);
    const std::string result = text != nullptr ? text : "";
    CsapiVPADfreemem(text);
    return result;
}

void decryptParts(StepOutcome& outcome) {
    void* key = nullptr;
    void* data = nullptr;
    unsigned int keyLength = 0;
    unsigned int dataLength = 0;
    unsigned int value = 0;
    outcome.result = watched([&] { return CsapiVPADgetdata(&key, &keyLength, &data, &dataLength, &value); });
    outcome.detail =
        decrypted(static_cast<std::uint8_t*>(key), keyLength, static_cast<std::uint8_t*>(data), dataLength);
    CsapiVPADfreemem(key);
    CsapiVPADfreemem(data);
}

void decryptRecord(StepOutcome& outcome) {
    AppResult record;
    outcome.result = watched([&] { return vault_pad_get_data(&record); });
    outcome.detail = decrypted(record.enc_key, record.enc_key_len, record.enc_data, record.enc_data_len);
}

void pressByName(StepOutcome& outcome, const char* key) {
    unsigned int value = kUntouched;
    unsigned int closed = kUntouched;
    outcome.result = watched([&] { return CsapiVPADevent(key, &value, &closed); });
    outcome.detail = std::to_string(value) + " " + std::to_string(closed);
}

/* What the client hands over as its public key. */
struct KeyBytes {
    Bytes key = {1, 2, 3, 4};
    Bytes aux = {5, 6};
};

ClientCall press(const SessionKind& kind, const char* key, std::deque<Value> answer) {
    const bool plain = kind.plainFamily;
    return {key, [plain, key, answer](StepOutcome& outcome) {
                platform().answer = answer;
                if (plain) {
                    const char* name = key;
                    outcome.result = watched([&] { return vault_pad_event(kKeyPress, &name); });
                } else {
                    pressByName(outcome, key);
                }
            }};
}

std::vector<ClientCall> openingCalls(const SessionKind& kind) {
    const int type = typeOf(kind);
    if (!kind.plainFamily) {
        return {{"create", [type](StepOutcome& outcome) {
                     KeyBytes bytes;
                     outcome.result = watched([&bytes, type] {
                         return CsapiVPADcreate(type, 4, 11, 12, bytes.key.data(), 2, 2, bytes.aux.data(), 2);
                     });
                 }}};
    }
    return {{"session", [](StepOutcome& outcome) { outcome.result = watched(vault_pad_session); }},
            {"create",
             [type](StepOutcome& outcome) { outcome.result = watched([type] { return vault_pad_create(type, 4); }); }},
            {"params", [](StepOutcome& outcome) {
                 KeyBytes bytes;
                 outcome.result = watched(
                     [&bytes] { return vault_pad_params_set(11, 12, bytes.key.data(), 2, 2, bytes.aux.data(), 2); });
             }}};
}

std::vector<ClientCall> closingCalls(const SessionKind& kind) {
    const ClientCall close = {"close", [](StepOutcome& outcome) { outcome.result = watched(vault_pad_close); }};
    if (!kind.plainFamily) {
        return {{"decrypt", decryptParts}, close};
    }
    return {{"pressed", [](StepOutcome& outcome) { outcome.result = watched(vault_pad_button_press); }},
            {"closed", [](StepOutcome& outcome) { outcome.result = watched(is_vault_pad_close); }},
            {"complete", [](StepOutcome& outcome) { outcome.result = watched(vault_pad_check_enc_len); }},
            {"decrypt", decryptRecord},
            close};
}

}  // namespace

std::vector<ClientCall> clientCalls(const SessionKind& kind) {
    std::vector<ClientCall> calls = openingCalls(kind);
    calls.push_back(press(kind, "XF86AudioRaiseVolume", {}));
    calls.push_back(press(kind, "Up", {1u, 0u, 0u, 0u, 0u}));
    calls.push_back(press(kind, "Return", finalAnswer()));
    for (const ClientCall& call : closingCalls(kind)) {
        calls.push_back(call);
    }
    return calls;
}

}  // namespace vaultpad::test
