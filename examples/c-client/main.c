/*
 * A client in C that lets another party read what is typed: it knows that party's public key only, and writes the
 * encrypted answer into two files for it.
 *
 *   c-client MODULUS-FILE KEY...
 *
 * MODULUS-FILE holds the key's modulus as "openssl rsa -modulus -noout" writes it; the public exponent is 65537.
 * KEY is a key of the remote control: Up, Down, Left, Right, Return, XF86Back. A real client takes them from its window
 * system. The answer comes in session-key.bin (under the RSA key) and data.bin (under the session key).
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vaultpad/vaultpad.h>

enum { MODULUS_BYTES = 256, EXPONENT_BYTES = 3, PIN_DIGITS = 4 };

static const char modulus_prefix[] = "Modulus=";

/* Fills the key blob: modulus, then exponent, both big-endian. Returns 0, -1 when the file holds no 2048-bit modulus.
 */
static int read_public_key(const char* file, unsigned char* key_blob) {
    static const unsigned char exponent[EXPONENT_BYTES] = {0x01, 0x00, 0x01};
    char line[sizeof(modulus_prefix) + 2 * MODULUS_BYTES + 1];
    FILE* stream = fopen(file, "r");
    if (stream == NULL) {
        return -1;
    }
    const int read = fgets(line, sizeof(line), stream) != NULL;
    fclose(stream);
    const size_t prefix = sizeof(modulus_prefix) - 1;
    if (!read || strncmp(line, modulus_prefix, prefix) != 0 ||
        strspn(line + prefix, "0123456789ABCDEF") != 2 * MODULUS_BYTES) {
        return -1;
    }
    for (size_t i = 0; i < MODULUS_BYTES; ++i) {
        const char digits[] = {line[prefix + 2 * i], line[prefix + 2 * i + 1], '\0'};
        key_blob[i] = (unsigned char)strtoul(digits, NULL, 16);
    }
    memcpy(key_blob + MODULUS_BYTES, exponent, EXPONENT_BYTES);
    return 0;
}

/* Passes the keys on until the pad is done. Returns 1 then, 0 when the keys ended before, -1 when a key failed. */
static int press_keys(int count, char** keys) {
    for (int i = 0; i < count; ++i) {
        unsigned int value = 0;
        unsigned int closed = 0;
        if (CsapiVPADevent(keys[i], &value, &closed) != 0) {
            return -1;
        }
        if (closed) {
            return 1;
        }
    }
    return 0;
}

static int write_file(const char* name, const void* bytes, unsigned int length) {
    FILE* stream = fopen(name, "wb");
    if (stream == NULL) {
        return -1;
    }
    const int written = fwrite(bytes, 1, length, stream) == length;
    return fclose(stream) == 0 && written ? 0 : -1;
}

static int write_answer(void) {
    void* key = NULL;
    void* data = NULL;
    unsigned int key_length = 0;
    unsigned int data_length = 0;
    unsigned int value = 0;
    CsapiVPADgetdata(&key, &key_length, &data, &data_length, &value);
    int result = -1;
    if (key_length == 0 || data_length == 0) {
        puts("The pad was left without an input.");
        result = 0;
    } else if (write_file("session-key.bin", key, key_length) == 0 && write_file("data.bin", data, data_length) == 0) {
        printf("session-key.bin: %u bytes, data.bin: %u bytes\n", key_length, data_length);
        result = 0;
    } else {
        perror("c-client: the answer could not be written");
    }
    CsapiVPADfreemem(key);
    CsapiVPADfreemem(data);
    return result;
}

int main(int argc, char** argv) {
    unsigned char key_blob[MODULUS_BYTES + EXPONENT_BYTES];
    if (argc < 3) {
        fputs("usage: c-client MODULUS-FILE KEY...\n", stderr);
        return EXIT_FAILURE;
    }
    if (read_public_key(argv[1], key_blob) != 0) {
        fprintf(stderr, "c-client: %s: no line Modulus=... of a 2048-bit RSA key; write it with openssl rsa -modulus\n",
                argv[1]);
        return EXIT_FAILURE;
    }
    if (CsapiVPADcreate(VAULTPAD_TYPE_PINPAD, PIN_DIGITS, 0, 0, key_blob, MODULUS_BYTES, EXPONENT_BYTES, NULL, 0) !=
        0) {
        fputs("c-client: the pad could not be opened; the platform's log says why\n", stderr);
        return EXIT_FAILURE;
    }
    const int done = press_keys(argc - 2, argv + 2);
    CsapiVPADclose();
    if (done != 1) {
        fputs(done == 0 ? "c-client: the keys ended before the pad was done\n" : "c-client: a key failed\n", stderr);
        return EXIT_FAILURE;
    }
    return write_answer() == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
