/* What the library's decryption makes of typed characters. */
#ifndef VAULTPAD_TESTS_INTEGRATION_DECODED_TEXT_H
#define VAULTPAD_TESTS_INTEGRATION_DECODED_TEXT_H

#include <string>

/*
 * The bytes of each character in UTF-8 stand at the character's position, and the next one's overwrite them; the text
 * ends at VAULTPAD_TEXT_LENGTH_MAX bytes.
 */
std::string decodedText(const std::u16string& characters);

#endif
