/* The demo whose pad speaks. */
#ifndef VAULTPAD_DEMO_SPEAKING_DEMO_H
#define VAULTPAD_DEMO_SPEAKING_DEMO_H

#include <string>

namespace vaultpad_demo {

/*
 * Goes on as the program whose library has the voice guide switched on, with the same arguments; returns only when this
 * is that program. Throws std::runtime_error.
 */
void becomeSpeakingDemo(char** argv);

/* The path of a program that plays a WAV file from its standard input without being asked to; empty when there is none.
 */
std::string findPlayer();

}  // namespace vaultpad_demo

#endif
