/*
 * Makes one of the platform's calls fail. This program defines the platform's functions itself and passes them on to
 * the host platform, so the library under test is the one that is shipped.
 */
#ifndef VAULTPAD_TESTS_SOAK_PLATFORM_FAULTS_H
#define VAULTPAD_TESTS_SOAK_PLATFORM_FAULTS_H

namespace vaultpad::soak {

/* Counts the calls from now on, and lets the nth one fail; 0 for none. */
void countPlatformCalls(int failing);

/* How many calls there have been since. */
int platformCalls();

/* The name of the function that failed since; null when none did. */
const char* failedPlatformCall();

}  // namespace vaultpad::soak

#endif
