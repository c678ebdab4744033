#include "rsa-key.h"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rsa.h>

/* Writes a number big-endian into size bytes, zeros in front. Returns 1, 0 when it does not fit. */
static int put_number(const EVP_PKEY* pair, const char* name, unsigned char* bytes, int size) {
    BIGNUM* number = NULL;
    const int written = EVP_PKEY_get_bn_param(pair, name, &number) == 1 && BN_bn2binpad(number, bytes, size) == size;
    BN_clear_free(number);
    return written;
}

int rsa_key_make(struct rsa_key* key) {
    EVP_PKEY* pair = EVP_RSA_gen(8 * RSA_KEY_BYTES);
    const int made =
        pair != NULL && put_number(pair, OSSL_PKEY_PARAM_RSA_N, key->public_blob, RSA_KEY_BYTES) &&
        put_number(pair, OSSL_PKEY_PARAM_RSA_E, key->public_blob + RSA_KEY_BYTES, RSA_KEY_EXPONENT_BYTES) &&
        put_number(pair, OSSL_PKEY_PARAM_RSA_D, key->private_exponent, RSA_KEY_BYTES);
    EVP_PKEY_free(pair);
    if (!made) {
        rsa_key_wipe(key);
    }
    return made ? 0 : -1;
}

void rsa_key_wipe(struct rsa_key* key) {
    OPENSSL_cleanse(key, sizeof(*key));
}
