/*
 * The wire between the host platform's trusted-execution client and the emulated trusted application (TA).
 *
 * One SOCK_SEQPACKET socket pair per session. The client sends a request with the blocks' descriptors as ancillary
 * data; the TA answers each request with one reply. The TA's end is the descriptor it is started with; end of file
 * ends the session. Blocks are memory files sealed against shrinking and growing; the TA writes answers into the last
 * one. Both processes run on one machine: words are in its byte order.
 */
#ifndef VAULTPAD_PLATFORM_HOST_SECURE_CHANNEL_WIRE_H
#define VAULTPAD_PLATFORM_HOST_SECURE_CHANNEL_WIRE_H

#include <stdint.h>

enum {
    VAULTPAD_CHANNEL_MAGIC = 0x56504348, /* "VPCH" */
    VAULTPAD_CHANNEL_VERSION = 1,
    VAULTPAD_CHANNEL_BLOCKS_MAX = 4 /* the newest blocks of the context that no event has carried yet, oldest first */
};

enum VaultPadChannelRequestKind {
    VAULTPAD_CHANNEL_OPEN = 1,  /* carries the UUID that the client asks for */
    VAULTPAD_CHANNEL_INVOKE = 2 /* carries an event and its blocks */
};

typedef struct VaultPadChannelBlock {
    uint32_t size;    /* bytes of the memory file */
    uint32_t written; /* bytes that the client appended; at most size */
} VaultPadChannelBlock;

typedef struct VaultPadChannelRequest {
    uint32_t magic;
    uint32_t version;
    uint32_t kind;
    uint32_t event;
    uint8_t uuid[16]; /* time-low, time-mid, time-hi-and-version big-endian, then clock-seq-and-node */
    uint32_t block_count;
    VaultPadChannelBlock blocks[VAULTPAD_CHANNEL_BLOCKS_MAX];
} VaultPadChannelRequest;

typedef struct VaultPadChannelReply {
    uint32_t magic;
    uint32_t kind;
    int32_t result; /* 0 accepted, -1 refused */
} VaultPadChannelReply;

/*
 * The trusted-UI description that the host platform hands out and event 8 carries: the secure display as the TA will
 * find it.
 */
typedef struct VaultPadTuiDescription {
    uint32_t magic;   /* VAULTPAD_TUI_MAGIC */
    uint32_t version; /* VAULTPAD_TUI_VERSION */
    uint32_t width;   /* pixels */
    uint32_t height;
    uint32_t pixel_format; /* VAULTPAD_TUI_ARGB6666 */
} VaultPadTuiDescription;

enum {
    VAULTPAD_TUI_MAGIC = 0x56505549, /* "VPUI" */
    VAULTPAD_TUI_VERSION = 1,
    VAULTPAD_TUI_ARGB6666 = 1 /* 3 bytes per pixel: 6 bits each of premultiplied alpha, red, green, blue */
};

#endif
