/*
 * The platform's cryptography: containers for an algorithm, each with a table of operations.
 *
 * Numbers are big-endian byte strings. *out_len holds the room on entry and the bytes written on return. Every
 * operation returns 0 on success. A null container is a failure, never a crash.
 */
#ifndef VAULTPAD_PLATFORM_CRYPTO_CORE_H
#define VAULTPAD_PLATFORM_CRYPTO_CORE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

enum {
    VAULTPAD_CRYPTO_RSA_1024 = 1054,
    VAULTPAD_CRYPTO_RSA_2048 = 1055,
    VAULTPAD_CRYPTO_AES_256 = 1048,
    VAULTPAD_CRYPTO_MODE_CBC = 1122,
    VAULTPAD_CRYPTO_PADDING_PKCS1_V15 = 1131, /* encryption padding of PKCS #1 v1.5 */
    VAULTPAD_CRYPTO_PADDING_PKCS7 = 1201
};

typedef struct CryptoCoreContainer CryptoCoreContainer;

typedef struct CryptoCoreOperations {
    /* Starts a symmetric decryption; iv has one block. */
    int (*init)(CryptoCoreContainer*, int mode, int padding, const uint8_t* key, uint32_t key_len, const uint8_t* iv);
    /* Feeds it. */
    int (*update)(CryptoCoreContainer*, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len);
    /* Feeds the last bytes, checks and takes off the padding. */
    int (*final)(CryptoCoreContainer*, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len);
    /* Sets an RSA key pair; the public exponent may be null with length 0. */
    int (*set_key_pair)(CryptoCoreContainer*, int padding, const uint8_t* modulus, uint32_t modulus_len,
                        const uint8_t* public_exponent, uint32_t public_exponent_len, const uint8_t* private_exponent,
                        uint32_t private_exponent_len);
    /* Decrypts one RSA block. */
    int (*decrypt)(CryptoCoreContainer*, const uint8_t* in, uint32_t in_len, uint8_t* out, uint32_t* out_len);
} CryptoCoreOperations;

struct CryptoCoreContainer {
    int algorithm;
    const CryptoCoreOperations* operations;
    void* state;
};

/* Makes a container for the algorithm; null when it is unknown or memory runs out. */
CryptoCoreContainer* create_CryptoCoreContainer(int algorithm);

/* Wipes and releases a container; null is allowed. */
void destroy_CryptoCoreContainer(CryptoCoreContainer*);

#ifdef __cplusplus
}
#endif

#endif
