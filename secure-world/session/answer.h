// What a key event is answered with.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_ANSWER_H
#define VAULTPAD_SECURE_WORLD_SESSION_ANSWER_H

#include <cstddef>
#include <cstdint>
#include <vector>

#include "pad/locked-page.h"
#include "pad/typed-text.h"
#include "session/public-key.h"

namespace vaultpad::secureworld {

struct Answer {
    bool pressed = false;          // the key did something
    bool closed = false;           // the pad is done
    std::uint32_t characters = 0;  // the fifth word: how many characters the data hold
    std::vector<std::uint8_t> encryptedKey;
    std::vector<std::uint8_t> encryptedData;
};

// Encrypts the text under a fresh session key and that key for the client, into the answer's last three members.
// workPage holds the plaintext meanwhile and is wiped in any case. Throws std::runtime_error when the cryptographic
// library fails.
void encryptText(const TypedText& text, const PublicKey& key, LockedPage* workPage, Answer* answer);

// Appends the answer's values in the order of the protocol. Throws Refusal, before it writes anything, when they take
// more than size bytes.
void writeAnswer(const Answer& answer, std::uint8_t* out, std::size_t size);

}  // namespace vaultpad::secureworld

#endif
