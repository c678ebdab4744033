/*
 * The platform's privilege checker. A null or stale handle is a failure, never a crash.
 */
#ifndef VAULTPAD_PLATFORM_CYNARA_H
#define VAULTPAD_PLATFORM_CYNARA_H

#ifdef __cplusplus
extern "C" {
#endif

/* What cynara_check() returns when access is allowed. */
enum { VAULTPAD_CYNARA_ALLOWED = 2 };

typedef struct cynara cynara;
typedef struct cynara_configuration cynara_configuration;

/* Opens a connection to the checker; configuration may be null. Returns 0 on success, then the caller finishes it. */
int cynara_initialize(cynara** handle, const cynara_configuration* configuration);

/*
 * Asks whether the client (a Smack label) of the user (a decimal uid) holds the privilege (a URI). Returns
 * VAULTPAD_CYNARA_ALLOWED, or any other value for no.
 */
int cynara_check(cynara* handle, const char* client, const char* client_session, const char* user,
                 const char* privilege);

/* Closes the connection. Returns 0 on success. */
int cynara_finish(cynara* handle);

#ifdef __cplusplus
}
#endif

#endif
