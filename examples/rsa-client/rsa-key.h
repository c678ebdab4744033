/* A client's RSA key in the form that the library takes. */
#ifndef RSA_CLIENT_RSA_KEY_H
#define RSA_CLIENT_RSA_KEY_H

/* OpenSSL's public exponent is 65537. */
enum { RSA_KEY_BYTES = 256, RSA_KEY_EXPONENT_BYTES = 3 };

#ifdef __cplusplus
extern "C" {
#endif

struct rsa_key {
    unsigned char public_blob[RSA_KEY_BYTES + RSA_KEY_EXPONENT_BYTES]; /* modulus, exponent */
    unsigned char private_exponent[RSA_KEY_BYTES];
};

/* Makes a 2048-bit key. Returns 0, or -1 with nothing in *key. */
int rsa_key_make(struct rsa_key* key);

void rsa_key_wipe(struct rsa_key* key);

#ifdef __cplusplus
}
#endif

#endif
