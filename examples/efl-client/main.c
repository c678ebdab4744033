/*
 * An EFL application that asks for a PIN: the library grabs the remote control's keys while the pad is up, and they
 * arrive in the application's own main loop.
 *
 *   efl-client [DIGITS]    how many digits the PIN has (default 4)
 */
#include <Ecore_Input.h>
#include <Efreet.h>
#include <Elementary.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <stdio.h>
#include <stdlib.h>
#include <vaultpad/vaultpad.h>

enum { KEY_BITS = 2048, MODULUS_BYTES = KEY_BITS / 8, EXPONENT_BYTES = 3, KEY_PRESSED = 2 };

static unsigned char public_key[MODULUS_BYTES + EXPONENT_BYTES];
static unsigned char private_exponent[MODULUS_BYTES];
static int exit_code = EXIT_FAILURE;

static int put_number(const EVP_PKEY* key, const char* name, unsigned char* bytes, int size) {
    BIGNUM* number = NULL;
    const int written = EVP_PKEY_get_bn_param(key, name, &number) == 1 ? BN_bn2binpad(number, bytes, size) : -1;
    BN_clear_free(number);
    return written == size;
}

static int make_key(void) {
    EVP_PKEY* key = EVP_RSA_gen(KEY_BITS);
    const int made = key != NULL && put_number(key, OSSL_PKEY_PARAM_RSA_N, public_key, MODULUS_BYTES) &&
                     put_number(key, OSSL_PKEY_PARAM_RSA_E, public_key + MODULUS_BYTES, EXPONENT_BYTES) &&
                     put_number(key, OSSL_PKEY_PARAM_RSA_D, private_exponent, MODULUS_BYTES);
    EVP_PKEY_free(key);
    return made;
}

static void say(const char* line) {
    puts(line);
    fflush(stdout);
}

/* The application would use the PIN here; this one shows it. */
static void read_pin(void) {
    AppResult result;
    char* text = NULL;
    unsigned int length = 0;
    if (vault_pad_check_enc_len() != 1) {
        say("left");
        return;
    }
    vault_pad_get_data(&result);
    CsapiVPADdecryptWithRSAKeyPair(public_key, MODULUS_BYTES, private_exponent, MODULUS_BYTES, 0, result.enc_key,
                                   result.enc_key_len, result.enc_data, result.enc_data_len, &text, &length);
    if (text != NULL) {
        printf("typed %s\n", text);
        fflush(stdout);
        OPENSSL_cleanse(text, VAULTPAD_TEXT_BUFFER_SIZE);
        exit_code = EXIT_SUCCESS;
    }
    CsapiVPADfreemem(text);
}

/* Always close, also after a failure: it is closing that gives the keys back to the other applications. */
static void finish(void) {
    vault_pad_close();
    say("closed");
    ecore_main_loop_quit();
}

static Eina_Bool on_key(void* data, int type, void* event) {
    const Ecore_Event_Key* key = event;
    const char* name = key->keyname;
    (void)data;
    (void)type;
    if (app == NULL) {
        return ECORE_CALLBACK_PASS_ON;
    }
    if (vault_pad_event(KEY_PRESSED, &name) != 0) {
        say("the trusted application is gone");
        finish();
    } else if (is_vault_pad_close() == 1) {
        read_pin();
        finish();
    }
    return ECORE_CALLBACK_PASS_ON;
}

static int open_pad(int digits) {
    if (vault_pad_session() != 1) {
        say("this application may not open a pad");
        return 0;
    }
    /* Creating succeeds without a trusted application too; setting the key tells. */
    return vault_pad_create(VAULTPAD_TYPE_PINPAD, digits) == 0 &&
           vault_pad_params_set(0, 0, public_key, MODULUS_BYTES, EXPONENT_BYTES, NULL, 0) == 0;
}

static void show_window(void) {
    Evas_Object* window = elm_win_util_standard_add("efl-client", "PIN");
    evas_object_resize(window, 640, 360);
    evas_object_show(window);
}

/* A client that asks for a PIN needs neither D-Bus nor the desktop's menus. */
static void start_toolkit(int argc, char** argv) {
    ecore_app_no_system_modules();
    efreet_cache_disable();
    elm_init(argc, argv);
}

int main(int argc, char** argv) {
    start_toolkit(argc, argv);
    if (!make_key()) {
        say("no RSA key could be made");
        return EXIT_FAILURE;
    }
    show_window();
    ecore_event_handler_add(ECORE_EVENT_KEY_DOWN, on_key, NULL);
    if (open_pad(argc > 1 ? atoi(argv[1]) : 4)) {
        say("open");
        elm_run();
    } else {
        say("the pad could not be opened");
        if (app != NULL) {
            vault_pad_close();
        }
    }
    OPENSSL_cleanse(private_exponent, sizeof(private_exponent));
    elm_shutdown();
    return exit_code;
}
