/*
 * The protocol between libvaultpad.so and its trusted application (TA).
 *
 * Both ends include this header and nothing else of each other. Usable from C11 and C++17.
 *
 * A command is one or two shared-memory blocks and an event number. Values are appended to a block without padding:
 * a word is 4 bytes little-endian, a string is its bytes and one NUL, a blob is its bytes alone (its length always
 * travels as a word before it).
 */
#ifndef VAULTPAD_TA_PROTOCOL_H
#define VAULTPAD_TA_PROTOCOL_H

/* The TA's UUID in the four parts that the trusted-execution client takes. */
#define VAULTPAD_TA_UUID_TIME_LOW 0x6f1d3c52u
#define VAULTPAD_TA_UUID_TIME_MID 0x8a47u
#define VAULTPAD_TA_UUID_TIME_HI_AND_VERSION 0x4be9u
#define VAULTPAD_TA_UUID_CLOCK_SEQ_AND_NODE \
    { 0x9c, 0x21, 0x5e, 0x77, 0x0b, 0xd4, 0x38, 0xf6 }

/* Event numbers. */
enum VaultPadTaEvent {
    VAULTPAD_TA_EVENT_IMAGE_DATA = 0,          /* a batch of images */
    VAULTPAD_TA_EVENT_SHOW = 1,                /* put the pad on the secure display */
    VAULTPAD_TA_EVENT_KEY = 2,                 /* one key of the remote control; the only event with an answer */
    VAULTPAD_TA_EVENT_PUBLIC_KEY = 3,          /* the client's RSA public key and prefix bytes */
    VAULTPAD_TA_EVENT_VOICE_DATA = 4,          /* a batch of voice clips */
    VAULTPAD_TA_EVENT_IME_TYPE = 5,            /* pad type, settings and screen origin */
    VAULTPAD_TA_EVENT_REFRESH_LOADING_BAR = 6, /* one step of the loading indicator */
    VAULTPAD_TA_EVENT_IMAGE_DONE = 7,          /* no more images follow */
    VAULTPAD_TA_EVENT_RENDER_CONTEXT = 8       /* the trusted-UI description */
};

/* Sizes in bytes of the block that each event travels in. */
enum VaultPadTaBlockSize {
    VAULTPAD_TA_BLOCK_IMAGE_DATA = 6144000,
    VAULTPAD_TA_BLOCK_SHOW = 102400,
    VAULTPAD_TA_BLOCK_KEY_REQUEST = 100,
    VAULTPAD_TA_BLOCK_KEY_ANSWER = 2048,
    VAULTPAD_TA_BLOCK_PUBLIC_KEY = 2048,
    VAULTPAD_TA_BLOCK_VOICE_DATA = 7168000,
    VAULTPAD_TA_BLOCK_IME_TYPE = 1024,
    VAULTPAD_TA_BLOCK_REFRESH_LOADING_BAR = 100,
    VAULTPAD_TA_BLOCK_IMAGE_DONE = 102400,
    VAULTPAD_TA_BLOCK_RENDER_CONTEXT = 6144000
};

/* Limits that both ends keep. */
enum VaultPadTaLimit {
    VAULTPAD_TA_IMAGE_COUNT_MAX = 512,        /* images of one pad */
    VAULTPAD_TA_IMAGE_NAME_SIZE = 512,        /* bytes of a name with its NUL */
    VAULTPAD_TA_IMAGE_BATCH_BUDGET = 5242880, /* bytes that one batch may add up to ... */
    VAULTPAD_TA_IMAGE_RECORD_OVERHEAD = 150,  /* ... each image counted with this much beside its pixels */
    VAULTPAD_TA_BYTES_PER_PIXEL = 3,          /* 6 bits each of alpha, red, green, blue; big-endian, premultiplied */
    VAULTPAD_TA_VOICE_BATCH_CLIPS = 15,       /* clips of one event 4 */
    VAULTPAD_TA_ENCRYPTED_KEY_MAX = 256,      /* bytes of the encrypted session key in an answer */
    VAULTPAD_TA_ENCRYPTED_DATA_MAX = 512,     /* bytes of the encrypted data in an answer */
    VAULTPAD_TA_SESSION_KEY_SIZE = 32,        /* AES-256 */
    VAULTPAD_TA_CIPHER_BLOCK_SIZE = 16,       /* AES-CBC with an all-zero vector */
    VAULTPAD_TA_TEXT_MAX = 40                 /* characters that a pad takes */
};

/* The secure display. */
enum VaultPadTaScreen { VAULTPAD_TA_SCREEN_WIDTH = 1920, VAULTPAD_TA_SCREEN_HEIGHT = 1080 };

/* First word of event 5. */
enum VaultPadTaImeType { VAULTPAD_TA_IME_PINPAD = 1, VAULTPAD_TA_IME_KEYBOARD = 2 };

/* Sixth word of event 5: how the panel is turned. */
enum VaultPadTaOrientation {
    VAULTPAD_TA_ORIENTATION_LANDSCAPE = 0,
    VAULTPAD_TA_ORIENTATION_PORTRAIT = 1,         /* images arrive turned 90 degrees clockwise */
    VAULTPAD_TA_ORIENTATION_PORTRAIT_REVERSED = 3 /* images arrive turned 90 degrees counter-clockwise */
};

/* Second word of event 2: X11 key codes (evdev code + 8). */
enum VaultPadTaKeyCode {
    VAULTPAD_TA_KEY_RETURN = 36,
    VAULTPAD_TA_KEY_UP = 111,
    VAULTPAD_TA_KEY_LEFT = 113,
    VAULTPAD_TA_KEY_RIGHT = 114,
    VAULTPAD_TA_KEY_DOWN = 116
};

/* An image's name is this prefix, the layout object's id, and this suffix. */
#define VAULTPAD_TA_IMAGE_NAME_PREFIX "/root/"
#define VAULTPAD_TA_IMAGE_NAME_SUFFIX ".ppm"

#endif
