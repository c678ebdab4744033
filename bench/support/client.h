/* A client of the shipped library, as small as one can be. */
#ifndef VAULTPAD_BENCH_SUPPORT_CLIENT_H
#define VAULTPAD_BENCH_SUPPORT_CLIENT_H

#include <string>

namespace vaultpad::bench {

/* Opens and shows a pad under a public key whose private part nobody has. Throws std::runtime_error. */
void openPad(int type);

/* Presses a key of the remote control. Throws std::runtime_error. */
void pressKey(const char* name);

/* This process's resident memory now, and the most that it ever was, in kilobytes. */
long residentKilobytes();
long peakKilobytes();

}  // namespace vaultpad::bench

#endif
