/*
 * A client that types on the keyboard and stops after each step, so that another process can look at it:
 *     typing-client MODULUS-AND-EXPONENTS PRESSES
 * The file holds modulus, public exponent (3 bytes) and private exponent. After each step it says a line and waits for
 * one: "waiting" (in place of a press called Wait), "typed KEY DATA" (the answer in hexadecimal), "decrypted", "freed",
 * "closed".
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <vaultpad/vaultpad.h>

enum { MODULUS_BYTES = 256, EXPONENT_BYTES = 3, PRESS_SIZE = 32 };

static unsigned char numbers[MODULUS_BYTES + EXPONENT_BYTES + MODULUS_BYTES];

static int read_numbers(const char* path) {
    FILE* file = fopen(path, "rb");
    const int complete = file != NULL && fread(numbers, 1, sizeof(numbers), file) == sizeof(numbers);
    if (file != NULL) {
        fclose(file);
    }
    return complete;
}

static void wait_for_line(void) {
    fflush(stdout);
    int byte = 0;
    while ((byte = getchar()) != '\n' && byte != EOF) {
    }
}

static int press_all(const char* presses) {
    unsigned int value = 0;
    unsigned int closed = 0;
    while (*presses != '\0' && closed == 0) {
        char name[PRESS_SIZE];
        const size_t length = strcspn(presses, ",");
        if (length >= sizeof(name)) {
            return 0;
        }
        memcpy(name, presses, length);
        name[length] = '\0';
        if (strcmp(name, "Wait") == 0) {
            puts("waiting");
            wait_for_line();
        } else if (CsapiVPADevent(name, &value, &closed) != 0) {
            return 0;
        }
        presses += length + (presses[length] == ',' ? 1 : 0);
    }
    return closed == 1;
}

static void say_bytes(const unsigned char* bytes, unsigned int length) {
    putchar(' ');
    for (unsigned int i = 0; i < length; ++i) {
        printf("%02x", bytes[i]);
    }
}

static char* decrypt(const void* key, unsigned int key_length, const void* data, unsigned int data_length) {
    char* text = NULL;
    unsigned int text_length = 0;
    CsapiVPADdecryptWithRSAKeyPair(numbers, MODULUS_BYTES, numbers + MODULUS_BYTES + EXPONENT_BYTES, MODULUS_BYTES, 0,
                                   key, key_length, data, data_length, &text, &text_length);
    return text;
}

static int type_and_decrypt(const char* presses) {
    if (!press_all(presses)) {
        fputs("typing-client: the presses do not complete the pad\n", stderr);
        return EXIT_FAILURE;
    }
    void* key = NULL;
    void* data = NULL;
    unsigned int key_length = 0;
    unsigned int data_length = 0;
    unsigned int value = 0;
    CsapiVPADgetdata(&key, &key_length, &data, &data_length, &value);
    printf("typed");
    say_bytes(key, key_length);
    say_bytes(data, data_length);
    putchar('\n');
    wait_for_line();
    char* text = decrypt(key, key_length, data, data_length);
    puts("decrypted");
    wait_for_line();
    CsapiVPADfreemem(key);
    CsapiVPADfreemem(data);
    if (text != NULL) {
        explicit_bzero(text, VAULTPAD_TEXT_BUFFER_SIZE);
    }
    CsapiVPADfreemem(text);
    puts("freed");
    wait_for_line();
    CsapiVPADclose();
    puts("closed");
    wait_for_line();
    return EXIT_SUCCESS;
}

int main(int argc, char** argv) {
    if (argc != 3 || !read_numbers(argv[1])) {
        fputs("typing-client: needs a file of numbers, and presses\n", stderr);
        return EXIT_FAILURE;
    }
    if (CsapiVPADcreate(VAULTPAD_TYPE_KEYBOARD, 0, 0, 0, numbers, MODULUS_BYTES, EXPONENT_BYTES, NULL, 0) != 0) {
        fputs("typing-client: no pad\n", stderr);
        return EXIT_FAILURE;
    }
    return type_and_decrypt(argv[2]);
}
