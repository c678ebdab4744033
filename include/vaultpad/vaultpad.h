/*
 * libvaultpad: a protected PIN pad and on-screen keyboard.
 *
 * The library shows the pad through a trusted application (TA) in the secure world, forwards the remote control's keys
 * to it, and hands back what was typed only in encrypted form: a session key under the client's RSA public key, and
 * data under that session key. The client decrypts both with CsapiVPADdecryptWithRSAKeyPair().
 *
 * There are two families of entry points over one session. In the vault_pad_* family the library grabs the remote
 * control's keys itself; in the CsapiVPAD* family the client passes key names in. Use one of them per session.
 *
 * Threads: call everything from one thread at a time, from the same thread for one session: the one that runs the EFL
 * main loop if the client uses EFL. The library takes no lock. A client need not use EFL at all.
 *
 * Signals: each start-up of a pad installs a handler for SIGUSR2 that only logs, and leaves it in place. No other
 * signal disposition of the client is changed when a call returns.
 *
 * Locale: opening a session sets the process's locale to the television's menu language, all categories, and its text
 * domain to the pad's. Closing does not put them back.
 *
 * EFL: a client that uses EFL initialises it before it opens a session. In any other client the library initialises EFL
 * for the session, without EFL's system modules, for the calling thread; if XDG_RUNTIME_DIR names no usable folder, it
 * is replaced in the environment for that moment. vault_pad_create() also initialises Elementary there, once, if there
 * is a Wayland compositor, and leaves it up; keys then arrive when the client runs the Ecore main loop.
 *
 * Usable from C11 and C++17.
 */
#ifndef VAULTPAD_VAULTPAD_H
#define VAULTPAD_VAULTPAD_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define VAULTPAD_API __attribute__((visibility("default")))
#else
#define VAULTPAD_API
#endif

/* Keyboard types: argument ime_type. */
enum VaultPadType { VAULTPAD_TYPE_PINPAD = 1, VAULTPAD_TYPE_KEYBOARD = 2 };

/* Results of the functions that return int, where a function does not say otherwise. */
enum VaultPadStatus { VAULTPAD_OK = 0, VAULTPAD_FAILURE = -1 };

/* Sizes that a client may want to reserve. */
enum VaultPadSize {
    VAULTPAD_RESULT_SIZE = 1920,    /* bytes of an AppResult */
    VAULTPAD_TEXT_LENGTH_MAX = 40,  /* bytes of a decrypted text */
    VAULTPAD_TEXT_BUFFER_SIZE = 48, /* bytes of the buffer that a decrypted text comes in */
    VAULTPAD_ENC_KEY_SIZE = 256,
    VAULTPAD_ENC_DATA_SIZE = 512
};

/*
 * The outcome of a key event. The layout is fixed: words are 32-bit little-endian, and the byte arrays start at
 * unaligned offsets. A client reads enc_key, enc_data, their lengths and ta_value, and may set status.
 */
typedef struct AppResult {
    int32_t status; /* never written by the library; see vault_pad_get_data() */
    uint8_t reserved_4[8];
    uint32_t ta_value; /* word returned by the TA with encrypted data, else 0 */
    char text[41];     /* used inside the library only */
    uint8_t reserved_57[41];
    uint8_t enc_key[256];              /* session key under the client's RSA key, enc_key_len bytes */
    uint8_t enc_data[512];             /* typed data under the session key, enc_data_len bytes */
    uint8_t rsa_modulus[256];          /* used inside the library only */
    uint8_t rsa_private_exponent[770]; /* used inside the library only */
    uint32_t enc_data_len;
    uint8_t reserved_1896[4];
    uint32_t enc_key_len;
    uint32_t rsa_modulus_len;          /* used inside the library only */
    uint32_t rsa_private_exponent_len; /* used inside the library only */
    uint8_t reserved_1912[8];
} AppResult;

#if defined(__cplusplus)
#define VAULTPAD_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define VAULTPAD_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif
#define VAULTPAD_ASSERT_OFFSET(field, offset) \
    VAULTPAD_STATIC_ASSERT(offsetof(AppResult, field) == (offset), #field " moved")

VAULTPAD_STATIC_ASSERT(sizeof(AppResult) == VAULTPAD_RESULT_SIZE, "AppResult changed its size");
VAULTPAD_ASSERT_OFFSET(status, 0);
VAULTPAD_ASSERT_OFFSET(ta_value, 12);
VAULTPAD_ASSERT_OFFSET(text, 16);
VAULTPAD_ASSERT_OFFSET(enc_key, 98);
VAULTPAD_ASSERT_OFFSET(enc_data, 354);
VAULTPAD_ASSERT_OFFSET(rsa_modulus, 866);
VAULTPAD_ASSERT_OFFSET(rsa_private_exponent, 1122);
VAULTPAD_ASSERT_OFFSET(enc_data_len, 1892);
VAULTPAD_ASSERT_OFFSET(enc_key_len, 1900);
VAULTPAD_ASSERT_OFFSET(rsa_modulus_len, 1904);
VAULTPAD_ASSERT_OFFSET(rsa_private_exponent_len, 1908);

/* The library's controller; opaque to clients. */
#if defined(__cplusplus)
namespace vaultpad {
class Application;
}
typedef vaultpad::Application VaultPadApplication;
extern "C" {
#else
typedef struct VaultPadApplication VaultPadApplication;
#endif

/* The current session, or null. Owned by the library: read it, never write or free it. */
extern VAULTPAD_API VaultPadApplication* app;

/*
 * The result of the latest key event; all zero when the library is loaded, kept after a session is closed. Written
 * by the library on every key that the TA answered and on every leaving key. A client reads it by copy, see
 * vault_pad_get_data().
 */
extern VAULTPAD_API AppResult app_data;

/*
 * Opens the session, or finds the open one.
 * Returns 1 when a session exists afterwards; 0 when the caller lacks the platform privilege
 * (http://tizen.org/privilege/internal/default/platform), or when there is no memory for a session.
 */
VAULTPAD_API int vault_pad_session(void);

/*
 * Grabs the remote control's keys, starts the pad up and shows it.
 * ime_type: a VaultPadType. Any other value is logged; start-up goes on with the type of the session so far.
 * extra: for the PIN pad, the number of digits after which it completes by itself, 0 for "on the Done key only";
 *        ignored for the keyboard.
 * Returns 0; -1 without privilege, without a session, or when the TA session cannot be opened, the renderer cannot be
 * set up or the layout cannot be read. Other failures are logged and return 0 although nothing is shown: keys that
 * cannot be grabbed, a layout that cannot be drawn, an upload that the TA refuses.
 */
VAULTPAD_API int vault_pad_create(int ime_type, int extra);

/*
 * Gives the TA the public key that the typed text will be encrypted for.
 * key_word1, key_word2: passed on as they are; 0 where the platform gives them no meaning.
 * key_blob: key_part1_len bytes of RSA modulus (128 or 256) followed by key_part2_len bytes of public exponent, both
 *           big-endian. Read during the call only, as is aux_blob.
 * aux_blob, aux_len: bytes that will stand before the typed text in the decrypted data (a client's nonce, say).
 * Returns 0; -1 without privilege, without a session, or when the TA cannot be reached or refuses the key.
 */
VAULTPAD_API int vault_pad_params_set(unsigned int key_word1, unsigned int key_word2, void* key_blob,
                                      unsigned int key_part1_len, unsigned int key_part2_len, void* aux_blob,
                                      unsigned int aux_len);

/*
 * Takes the pad down and ends the session: keys released if the start-up had succeeded, TA session closed. The latest
 * result stays in app_data.
 * Returns 0; -1 without privilege or without a session.
 */
VAULTPAD_API int vault_pad_close(void);

/* Returns 1 when the user has left or completed the pad, else 0; 0 without a session. */
VAULTPAD_API int is_vault_pad_close(void);

/*
 * Returns 1 before the first key event and after every key that is handled on this side, known or not; after a
 * forwarded key whether the TA says that it did something. 0 without a session.
 */
VAULTPAD_API int vault_pad_button_press(void);

/*
 * Copies app_data to out (VAULTPAD_RESULT_SIZE bytes; not null). Works without a session. When app_data.status is 1
 * the record is emptied first, so that an all-zero record with status 1 is handed out.
 * Returns 0.
 */
VAULTPAD_API int vault_pad_get_data(void* out);

/*
 * Passes one key event to the pad.
 * event_type: 3 is ignored (returns 0); any other value is forwarded to the TA as it is. Use 2.
 * event_data: address of a const char * that holds the key's name ("Return", "Up", "Down", "Left", "Right",
 *             "XF86Back", ...); read during the call only.
 * Returns 0 when the key was taken (unknown keys are logged and taken), -1 without a session or when the TA failed.
 */
VAULTPAD_API int vault_pad_event(int event_type, void* event_data);

/* The same function under the name that existing clients link against. */
VAULTPAD_API int vaullt_pad_event(int event_type, void* event_data);

/* Returns 1 when app_data holds both an encrypted key and encrypted data, 0 when not, -1 without a session. */
VAULTPAD_API int vault_pad_check_enc_len(void);

/*
 * Session, start-up, show and public key in one call; the library does not grab keys. The arguments are those of
 * vault_pad_create() and vault_pad_params_set().
 * Returns 0; -1 without privilege, when the TA session cannot be opened, the renderer cannot be set up or the layout
 * cannot be read (the session is closed again), or when the public key was not taken (the session stays open: close
 * it).
 */
VAULTPAD_API int CsapiVPADcreate(int ime_type, int extra, unsigned int key_word1, unsigned int key_word2,
                                 void* key_blob, unsigned int key_part1_len, unsigned int key_part2_len, void* aux_blob,
                                 unsigned int aux_len);

/*
 * Passes one key to the pad.
 * key_name: the key's name as in vault_pad_event(); not null.
 * out_value: receives app_data.ta_value, 0 on failure. out_closed: receives 1 when the pad is done (completed, left,
 *            or failed), else 0. Neither may be null; both are untouched without a session.
 * Returns 0; -1 without a session or when the TA failed.
 */
VAULTPAD_API int CsapiVPADevent(const char* key_name, unsigned int* out_value, unsigned int* out_closed);

/*
 * Copies the encrypted session key and the encrypted data of the latest result into new buffers, which the caller
 * releases with CsapiVPADfreemem() each (a buffer of length 0 may be null). out_value receives ta_value. No argument
 * may be null. Works without a session.
 * Returns 0.
 */
VAULTPAD_API int CsapiVPADgetdata(void** out_key, unsigned int* out_key_len, void** out_data,
                                  unsigned int* out_data_len, unsigned int* out_value);

/* The same as vault_pad_close(). */
VAULTPAD_API int CsapiVPADclose(void);

/* Releases a buffer handed out by CsapiVPADgetdata() or CsapiVPADdecryptWithRSAKeyPair(); null is allowed. Returns 0.
 */
VAULTPAD_API int CsapiVPADfreemem(void* p);

/*
 * Decrypts a result with the client's RSA private key.
 * modulus, private_exponent: big-endian numbers; modulus_len 128 or 256 bytes.
 * prefix_len: the aux_len given with the public key.
 * enc_key, enc_data: what CsapiVPADgetdata() returned.
 * out_text: receives a NUL-terminated text of at most VAULTPAD_TEXT_LENGTH_MAX bytes in a buffer of
 *           VAULTPAD_TEXT_BUFFER_SIZE bytes, or null when nothing could be decrypted. The caller wipes it and releases
 *           it with CsapiVPADfreemem(). out_text_len: the length of the whole decoded text, which may exceed what the
 *           buffer holds. Neither may be null.
 * Each character has one byte of the text, so only characters of one byte in the process's current locale come back
 * whole: ASCII in a UTF-8 locale. The pads' layouts type nothing else. Returns 0 in every case: look at out_text. An
 * input longer than AppResult has room for ends the process.
 *
 * The decrypted text is written to the platform log at info level, as clients of the platform expect. An integrator
 * who does not want that builds the library with the CMake option VAULTPAD_LOG_DECRYPTED_TEXT=OFF, which leaves out
 * that one line.
 */
VAULTPAD_API int CsapiVPADdecryptWithRSAKeyPair(const unsigned char* modulus, unsigned int modulus_len,
                                                const unsigned char* private_exponent,
                                                unsigned int private_exponent_len, unsigned int prefix_len,
                                                const unsigned char* enc_key, unsigned int enc_key_len,
                                                const unsigned char* enc_data, unsigned int enc_data_len,
                                                char** out_text, unsigned int* out_text_len);

#if defined(__cplusplus)
}
#endif

#undef VAULTPAD_ASSERT_OFFSET
#undef VAULTPAD_STATIC_ASSERT

#endif
