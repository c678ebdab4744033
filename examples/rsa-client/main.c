/*
 * A client in C with an RSA key of its own, made with OpenSSL for this one session. It looks at every result that the
 * library gives, and says what to do about it.
 *
 *   rsa-client pinpad|keyboard KEY...
 *
 * KEY is a key of the remote control, for instance Up or Return. On success the decrypted text is written to standard
 * output. Exit status: 0 typed, 1 left without an input, 2 wrong use, 3 a failure.
 */
#include <openssl/crypto.h>
#include <openssl/rand.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vaultpad/vaultpad.h>

#include "rsa-key.h"

enum { TYPED = 0, LEFT = 1, WRONG_USE = 2, FAILED = 3 };
/* A nonce at the head of the decrypted data ties an answer to this session. */
enum { NONCE_BYTES = 16 };

static int fail(const char* text) {
    fprintf(stderr, "rsa-client: %s\n", text);
    return FAILED;
}

static int open_pad(int type, struct rsa_key* key) {
    unsigned char nonce[NONCE_BYTES];
    if (RAND_bytes(nonce, NONCE_BYTES) != 1) {
        return fail("no random numbers");
    }
    if (CsapiVPADcreate(type, 0, 0, 0, key->public_blob, RSA_KEY_BYTES, RSA_KEY_EXPONENT_BYTES, nonce, NONCE_BYTES) ==
        0) {
        return TYPED;
    }
    /* Where the public key alone was refused the session is open: it has to be closed. */
    if (app != NULL) {
        CsapiVPADclose();
        return fail("the pad was opened, but the trusted application refused the public key");
    }
    return fail(
        "no pad: the client lacks the privilege, or the trusted application does not run, or a layout is missing");
}

static int press_keys(int count, char** keys) {
    for (int i = 0; i < count; ++i) {
        unsigned int value = 0;
        unsigned int closed = 0;
        if (CsapiVPADevent(keys[i], &value, &closed) != 0) {
            return fail("the trusted application did not take the key, or is gone");
        }
        if (!vault_pad_button_press()) {
            fprintf(stderr, "rsa-client: %s did nothing here\n", keys[i]);
        }
        if (closed) {
            return vault_pad_check_enc_len() == 1 ? TYPED : LEFT;
        }
    }
    return fail("the keys ended before the pad was done");
}

static int print_text(const struct rsa_key* key) {
    void* session_key = NULL;
    void* data = NULL;
    unsigned int session_key_length = 0;
    unsigned int data_length = 0;
    unsigned int characters = 0;
    CsapiVPADgetdata(&session_key, &session_key_length, &data, &data_length, &characters);
    char* text = NULL;
    unsigned int text_length = 0;
    CsapiVPADdecryptWithRSAKeyPair(key->public_blob, RSA_KEY_BYTES, key->private_exponent, RSA_KEY_BYTES, NONCE_BYTES,
                                   session_key, session_key_length, data, data_length, &text, &text_length);
    CsapiVPADfreemem(session_key);
    CsapiVPADfreemem(data);
    if (text == NULL) {
        return fail("the answer could not be decrypted");
    }
    const int complete = text_length == strlen(text) && text_length == characters;
    if (complete) {
        puts(text);
    }
    OPENSSL_cleanse(text, VAULTPAD_TEXT_BUFFER_SIZE);
    CsapiVPADfreemem(text);
    return complete ? TYPED : fail("the text holds characters that do not fit one byte");
}

static int run(int type, int count, char** keys, struct rsa_key* key) {
    int status = open_pad(type, key);
    if (status != TYPED) {
        return status;
    }
    status = press_keys(count, keys);
    if (CsapiVPADclose() != 0) {
        return fail("the session could not be closed");
    }
    if (status == LEFT) {
        fputs("rsa-client: the pad was left without an input\n", stderr);
    }
    return status == TYPED ? print_text(key) : status;
}

int main(int argc, char** argv) {
    const int keyboard = argc > 1 && strcmp(argv[1], "keyboard") == 0;
    if (argc < 3 || (!keyboard && strcmp(argv[1], "pinpad") != 0)) {
        fputs("usage: rsa-client pinpad|keyboard KEY...\n", stderr);
        return WRONG_USE;
    }
    struct rsa_key key;
    if (rsa_key_make(&key) != 0) {
        return fail("no RSA key");
    }
    const int status = run(keyboard ? VAULTPAD_TYPE_KEYBOARD : VAULTPAD_TYPE_PINPAD, argc - 2, argv + 2, &key);
    rsa_key_wipe(&key);
    return status;
}
