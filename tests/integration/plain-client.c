/*
 * A client in C that has never heard of EFL. It says one line when it has got as far as its argument names:
 *   open      a pad is up; waits for a signal
 *   closed    a pad was up and is closed; waits for a signal
 *   handlers  compares its signal handlers before, during and after a session
 *   session   opens, types one digit, decrypts, closes, ends
 */
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>
#include <vaultpad/vaultpad.h>

enum { MODULUS_BYTES = 128, KEY_BITS = 1024, EXPONENT_BYTES = 3 };

static unsigned char key_blob[MODULUS_BYTES + EXPONENT_BYTES];
static unsigned char private_exponent[MODULUS_BYTES];

static int put_number(const EVP_PKEY* key, const char* name, unsigned char* bytes, int size) {
    BIGNUM* number = NULL;
    const int written = EVP_PKEY_get_bn_param(key, name, &number) == 1 ? BN_bn2binpad(number, bytes, size) : -1;
    BN_clear_free(number);
    return written;
}

static int make_key(void) {
    EVP_PKEY* key = EVP_RSA_gen(KEY_BITS);
    const int made = key != NULL && put_number(key, OSSL_PKEY_PARAM_RSA_N, key_blob, MODULUS_BYTES) > 0 &&
                     put_number(key, OSSL_PKEY_PARAM_RSA_E, key_blob + MODULUS_BYTES, EXPONENT_BYTES) > 0 &&
                     put_number(key, OSSL_PKEY_PARAM_RSA_D, private_exponent, MODULUS_BYTES) > 0;
    EVP_PKEY_free(key);
    return made;
}

static int open_pad(void) {
    return CsapiVPADcreate(VAULTPAD_TYPE_PINPAD, 1, 0, 0, key_blob, MODULUS_BYTES, EXPONENT_BYTES, NULL, 0);
}

static int say(const char* line) {
    puts(line);
    fflush(stdout);
    return EXIT_SUCCESS;
}

static void own_handler(int number) {
    (void)number;
}

/* SIGUSR2 is the one that the library keeps. */
static const int kept_signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGUSR1, SIGCHLD, SIGPIPE, SIGALRM, SIGPWR};
enum { KEPT_SIGNALS = sizeof(kept_signals) / sizeof(kept_signals[0]) };

static int handlers_are_ours(void) {
    for (int i = 0; i < KEPT_SIGNALS; ++i) {
        struct sigaction action;
        sigaction(kept_signals[i], NULL, &action);
        if (action.sa_handler != own_handler) {
            printf("handler of signal %d replaced\n", kept_signals[i]);
            return 0;
        }
    }
    return 1;
}

static int compare_handlers(void) {
    for (int i = 0; i < KEPT_SIGNALS; ++i) {
        signal(kept_signals[i], own_handler);
    }
    if (open_pad() != 0 || !handlers_are_ours() || CsapiVPADclose() != 0 || !handlers_are_ours()) {
        return EXIT_FAILURE;
    }
    return say("handlers kept");
}

static int decrypt_one_digit(void) {
    unsigned int value = 0;
    unsigned int closed = 0;
    if (CsapiVPADevent("Return", &value, &closed) != 0 || closed != 1) {
        return EXIT_FAILURE;
    }
    void* key = NULL;
    void* data = NULL;
    unsigned int key_length = 0;
    unsigned int data_length = 0;
    CsapiVPADgetdata(&key, &key_length, &data, &data_length, &value);
    char* text = NULL;
    unsigned int text_length = 0;
    CsapiVPADdecryptWithRSAKeyPair(key_blob, MODULUS_BYTES, private_exponent, MODULUS_BYTES, 0, key, key_length, data,
                                   data_length, &text, &text_length);
    const int right = text != NULL && strcmp(text, "1") == 0;
    CsapiVPADfreemem(key);
    CsapiVPADfreemem(data);
    CsapiVPADfreemem(text);
    return right && CsapiVPADclose() == 0 ? say("typed 1") : EXIT_FAILURE;
}

int main(int argc, char** argv) {
    const char* mode = argc == 2 ? argv[1] : "";
    if (!make_key()) {
        fputs("plain-client: no RSA key\n", stderr);
        return EXIT_FAILURE;
    }
    if (strcmp(mode, "handlers") == 0) {
        return compare_handlers();
    }
    if (open_pad() != 0) {
        fputs("plain-client: no pad\n", stderr);
        return EXIT_FAILURE;
    }
    if (strcmp(mode, "session") == 0) {
        return decrypt_one_digit();
    }
    if (strcmp(mode, "closed") == 0) {
        CsapiVPADclose();
    }
    say("ready");
    for (;;) {
        pause();
    }
}
